// Plain HTTP for the demo: one request at a time, without cookies or logins of its own; and the files that a
// transfer leads to, which prove that it carries enough to get them.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

namespace zab::demo {

/// Texts are UTF-8, bodies bytes.
struct WebRequest {
    std::string url;
    std::string method = "GET";
    std::vector<std::pair<std::string, std::string>> headers{};
    std::string body{};
    std::string server{};  // "host:port" that is asked in place of the one in the address; empty: that one
    bool followsRedirects = false;
};

/// As it was sent: header values are bytes, and no encoding is undone.
struct WebAnswer {
    std::uint32_t status = 0;
    std::vector<std::pair<std::string, std::string>> headers{};
    std::string body{};
};

/// Throws std::runtime_error when the address is not of HTTP, or the answer cannot be read to its end.
WebAnswer fetch(const WebRequest& request);

/// Downloads what a line of the download manager's log tells of. Follows
/// redirects. The segments of an HLS link are fetched in order and joined, those of its sound behind them.
/// Throws as fetch() does.
std::string downloadOf(const nlohmann::json& transfer);

}  // namespace zab::demo
