// The call into the download manager's link transmitter: the one place that knows the positions of its
// arguments.
//
// Narrow texts are in the system's ANSI code page; an empty or absent text travels as a null one. The call
// crosses processes and dispatches window messages meanwhile: no lock may be held. Cookies and logins go into
// the call and nowhere else.
#pragma once

#include <cstdint>
#include <optional>

#include "transfer/browser_access.h"
#include "transfer/com_win32.h"

namespace zab {

/// COM and the link transmitter, as long as one transfer or a row of them needs both. For one thread.
class LinkTransmitterSession {
  public:
    /// On success the server is there. A failed attempt is repeated by the next call.
    [[nodiscard]] HRESULT connect() noexcept;
    /// The server as `connect` found it; a reference of the caller's own, because what runs during a call may
    /// end the connection.
    [[nodiscard]] InterfacePtr<ILinkTransmitter> server() const noexcept { return server_.another(); }
    /// For a server that died: the next `connect` looks for another one.
    void forgetServer() noexcept { server_.reset(); }
    /// What the browser holds for the addresses of these transfers.
    [[nodiscard]] BrowserAccess& access() noexcept { return access_; }

  private:
    BrowserAccess access_;
    std::optional<ComApartment> apartment_;
    InterfacePtr<ILinkTransmitter> server_;  // given back before COM ends
};

/// Hands one download over; true when the call was made, whatever the download manager answered. Otherwise the
/// browser keeps its load; the user is told on a thread of its own, but not about a missing URL, a text that
/// cannot be converted, or when `retryLater` is set to 1: then no call can be made from this thread now.
bool SendToLinkTransmitter(const char* url,              // 1; null: nothing is sent
                           const char* cookies,          // 2
                           const char* user,             // 3
                           const char* password,         // 4
                           const char* referrer,         // 5
                           const char* userAgent,        // 6
                           const char* fileName,         // 7
                           const char* postData,         // 8
                           std::int32_t postLength,      // 9; bytes; 0: no POST data is sent
                           const char* postContentType,  // 10
                           const char* typeHint,         // 11
                           const char* pageTitle,        // 12
                           std::int32_t bodyOffered,     // 13; 1: offer the local copy of the body
                           std::uint64_t sizeBytes,      // 14; of the body; 0: unknown
                           std::int32_t ignored,         // 15
                           std::uint32_t flags,          // 16; see transfer_flags
                           const char* contentType,      // 17
                           const char* pageUrl,          // 18
                           const char* secondUrl,        // 19
                           const char* extraData,        // 20
                           std::int32_t extraDataGiven,  // 21
                           const char* description,      // 22
                           std::int32_t* retryLater,     // 23; may be null: then that case is a failure too
                           LinkTransmitterSession* session = nullptr);  // null: one of the call's own

}  // namespace zab
