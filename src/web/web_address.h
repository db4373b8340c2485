// The parts of an absolute address (RFC 3986) that decide which cookies and which login belong to it.
//
// Bytes as they stand, nothing decoded; scheme and host in lower case. User information is dropped.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zab {

/// What a login belongs to.
struct Origin {
    std::string scheme;
    std::string host;        // an IPv6 address keeps its brackets
    std::uint16_t port = 0;  // the scheme's own when the address names none; 0: neither
    bool operator==(const Origin&) const = default;
};

struct WebAddress {
    Origin origin;
    std::string_view path;  // part of the text that was read; up to "?" or "#"; at least "/"
};

/// The one spelling of an address: scheme and host in lower case, the host without escapes, no default port, at
/// least "/" for a path. Nothing for an address that a browser refuses: without a host, with a letter that no
/// host has, or with a port that is no number below 65,536.
std::optional<std::string> canonicalUrl(std::string_view url);

/// Nothing when `url` is not scheme://host..., or its port is no number below 65,536.
std::optional<WebAddress> webAddressOf(std::string_view url);

}  // namespace zab
