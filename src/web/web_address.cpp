#include "web/web_address.h"

#include <algorithm>

#include "binding/text.h"
#include "web/url.h"
#include "web/url_resolve.h"

namespace zab {
namespace {

/// Position of the ":" before the port, or the end; the colons of an IPv6 address stand in brackets.
std::size_t hostLength(std::string_view hostAndPort) noexcept {
    const auto bracket = hostAndPort.starts_with('[') ? hostAndPort.find(']') : 0;
    if (bracket == std::string_view::npos) return hostAndPort.size();
    const auto colon = hostAndPort.find(':', bracket);
    return colon == std::string_view::npos ? hostAndPort.size() : colon;
}

std::optional<std::uint16_t> portOf(std::string_view digits) noexcept {
    constexpr std::uint64_t kMost = UINT16_MAX;
    for (const char c : digits)
        if (!isDigit(c)) return std::nullopt;
    const auto port = leadingDigits(digits, kMost + 1);
    if (!port || *port > kMost) return std::nullopt;
    return static_cast<std::uint16_t>(*port);
}

struct Authority {
    std::string_view scheme, user, host, port, rest;  // user with its "@"; rest from the path on
};

std::optional<Authority> authorityOf(std::string_view url) {
    const auto mark = url.find("://");
    if (mark == std::string_view::npos || mark == 0) return std::nullopt;
    Authority parts;
    parts.scheme = url.substr(0, mark);
    parts.rest = url.substr(mark + 3);
    std::string_view hostAndPort = parts.rest.substr(0, parts.rest.find_first_of("/?#"));
    parts.rest.remove_prefix(hostAndPort.size());
    parts.user = hostAndPort.substr(0, hostAndPort.rfind('@') + 1);  // npos + 1 is 0
    hostAndPort.remove_prefix(parts.user.size());
    parts.host = hostAndPort.substr(0, hostLength(hostAndPort));
    parts.port = hostAndPort.substr(std::min(parts.host.size() + 1, hostAndPort.size()));
    if (parts.host.empty()) return std::nullopt;
    return parts;
}

bool isPlainHost(std::string_view host) noexcept {
    const bool bracketed = host.size() > 2 && host.front() == '[' && host.back() == ']';
    if (bracketed) return host.find_first_not_of("0123456789abcdefABCDEF:.", 1) == host.size() - 1;
    return std::none_of(host.begin(), host.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte <= ' ' || byte == 0x7F ||
               std::string_view("#%/:<>?@[\\]^|").find(c) != std::string_view::npos;
    });
}

}  // namespace

std::optional<std::string> canonicalUrl(std::string_view url) {
    const auto parts = authorityOf(url);
    if (!parts) return std::nullopt;
    std::string target = lowered(parts->scheme);
    const std::uint16_t standard = defaultPortOf(target);
    const std::string host = lowered(withoutEscapes(parts->host));
    const auto port = parts->port.empty() ? standard : portOf(parts->port);
    if (!port || !isPlainHost(host)) return std::nullopt;
    target.append("://").append(parts->user).append(host);
    if (*port != standard) target.append(":").append(std::to_string(*port));
    if (!parts->rest.starts_with('/')) target += '/';
    return target.append(parts->rest);
}

std::optional<WebAddress> webAddressOf(std::string_view url) {
    const auto parts = authorityOf(url);
    if (!parts) return std::nullopt;
    WebAddress address;
    address.origin.scheme = lowered(parts->scheme);
    address.origin.host = lowered(parts->host);
    const auto port = parts->port.empty() ? defaultPortOf(address.origin.scheme) : portOf(parts->port);
    if (!port) return std::nullopt;
    address.origin.port = *port;
    address.path = beforeQuery(parts->rest);
    if (address.path.empty()) address.path = "/";
    return address;
}

}  // namespace zab
