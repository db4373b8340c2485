// Plain HTTP for the stand-ins: one request at a time, without cookies or logins of its own.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zab::testbed {

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

/// Lower-case hexadecimal digits.
std::string sha256Of(std::string_view bytes);

}  // namespace zab::testbed
