// Downloads a link with what the browser told about it: proof that a transfer carries enough to get the file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace zab::testbed {

/// Narrow texts; empty: absent.
struct DownloadOrder {
    std::wstring url;
    std::wstring secondUrl;  // of a film whose sound is kept apart: the sound's playlist
    std::wstring userAgent;
    std::wstring referrer;
    std::wstring cookies;
    std::string user;
    std::string password;
    std::optional<std::string> postBody;
    std::wstring postContentType;
};

struct Downloaded {
    std::uint32_t status = 0;  // of HTTP
    std::uint64_t sizeBytes = 0;
    std::string sha256;  // lower-case hexadecimal
};

/// Nothing when the address is not of HTTP or the server cannot be read to the end. Follows redirects. The
/// segments of an HLS link are fetched in order and joined, those of its sound behind them.
std::optional<Downloaded> download(const DownloadOrder& order);

}  // namespace zab::testbed
