// The way to the download manager: one call for one download, one session for many.
//
// Both make a synchronous call into another process and dispatch window messages meanwhile: hold no lock over
// it. When the download manager cannot be reached, a thread of its own tells the user why; nothing here waits
// for it.
#pragma once

#include <memory>

#include "transfer/transfer_record.h"

namespace zab {

enum class TransferResult {
    made,        // the download manager has it: the browser's own load may be cancelled
    notMade,     // it was not reached (the user is told) or there is no URL: the browser keeps its load
    retryLater,  // no outgoing call is possible from this thread now; nobody is told
};

TransferResult sendToDownloadManager(const TransferRecord& record) noexcept;

/// For several downloads in a row on one thread: COM is initialised and the server is created once.
/// Made, used and destroyed on the same thread.
class TransferSession {
  public:
    TransferSession();
    ~TransferSession();
    TransferSession(const TransferSession&) = delete;
    TransferSession& operator=(const TransferSession&) = delete;

    TransferResult send(const TransferRecord& record) noexcept;
    /// For a record of which no request was seen, in UTF-8: asks as the browser would (see BrowserAccess).
    TransferResult sendAsBrowser(TransferRecord record) noexcept;

  private:
    std::unique_ptr<class LinkTransmitterSession> session_;
};

/// For the first start in this browser: tells the user, on a thread of its own, that the download manager is
/// not installed, and offers its installation page. Does not look whether that is so.
void reportMissingManagerAtStart() noexcept;

/// For a command whose transfer could not be made from this thread now.
void reportNoCallsNow() noexcept;

/// For a command that found nothing to transfer on a page.
void reportNoLinksFound() noexcept;

/// The same for media. Told once for as long as the box is open.
void reportNoMediaFound() noexcept;

}  // namespace zab
