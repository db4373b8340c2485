// What the download manager is told about one download, by name.
//
// Texts are narrow, in the system's ANSI code page (text that does not fit it: UTF-8); an empty text is an
// absent one. Everybody who takes a download away fills this record; where its parts end up is known in one
// place, the link transmitter.
#pragma once

#include <cstdint>
#include <string>

namespace zab {

/// Transfer flags: what kind of decision took the download.
namespace transfer_flags {
inline constexpr std::uint32_t kPlain = 0;        // media entries, and every command but the link command
inline constexpr std::uint32_t kLinkCommand = 4;  // "Download with ZAB" on a link
inline constexpr std::uint32_t kOrdinary = 8;     // a response that the catch list names
inline constexpr std::uint32_t kForced = 0x804;   // decided before there was a response, whatever its body
inline constexpr std::uint32_t kServerNamed = kOrdinary | 0x1000;         // Content-Disposition named the file
inline constexpr std::uint32_t kPostUnavailable = kOrdinary | 0x1000000;  // a POST body exists, not captured

/// Flags of a response that is taken: a body that could not be captured outweighs the name.
constexpr std::uint32_t ofResponse(bool postUnavailable, bool serverNamed) noexcept {
    return postUnavailable ? kPostUnavailable : serverNamed ? kServerNamed : kOrdinary;
}
}  // namespace transfer_flags

struct TransferRecord {
    std::string url;  // a fragment is cut before it is sent
    std::string referrer;
    std::string cookies;
    std::string cookiesFrom;  // without a request of its own: the address for whose host `cookies` are known
    std::string userAgent;
    std::string user;      // of Basic credentials
    std::string password;  // of Basic credentials
    std::string fileName;  // with its "utf-8''" prefix when it has one
    std::string postBody;  // bytes; empty: no body is sent
    std::string postContentType;
    std::string typeHint;     // extension without a dot
    std::string contentType;  // of the response
    std::string pageTitle;
    std::string pageUrl;          // its cookies and stored login travel with it
    std::string secondUrl;        // of a media entry; its cookies and stored login travel with it
    std::string extraData;        // of a media entry; sent only together with `secondUrl`
    std::string description;      // of a media entry or of the link command
    std::uint64_t sizeBytes = 0;  // of the body when known, else 0
    bool bodyOffered = false;     // offer the browser's local copy of the body, when it has exactly `sizeBytes`
    std::uint32_t flags = transfer_flags::kPlain;
};

/// From UTF-8, in which pages and entries have their texts; what is no UTF-8 is narrow already.
void makeNarrow(TransferRecord& record);

}  // namespace zab
