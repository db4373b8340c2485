#include "web/web_address.h"

#include <algorithm>

#include "binding/text.h"
#include "web/url.h"

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

}  // namespace

std::optional<WebAddress> webAddressOf(std::string_view url) {
    const auto mark = url.find("://");
    if (mark == std::string_view::npos || mark == 0) return std::nullopt;
    WebAddress address;
    address.origin.scheme = lowered(url.substr(0, mark));

    const std::string_view rest = url.substr(mark + 3);
    const auto authorityLength = std::min(rest.find_first_of("/?#"), rest.size());
    std::string_view hostAndPort = rest.substr(0, authorityLength);
    if (const auto at = hostAndPort.rfind('@'); at != std::string_view::npos) hostAndPort.remove_prefix(at + 1);
    const auto length = hostLength(hostAndPort);
    if (length == 0) return std::nullopt;
    address.origin.host = lowered(hostAndPort.substr(0, length));

    const std::string_view digits = hostAndPort.substr(std::min(length + 1, hostAndPort.size()));
    const auto port = digits.empty() ? defaultPortOf(address.origin.scheme) : portOf(digits);
    if (!port) return std::nullopt;
    address.origin.port = *port;

    address.path = beforeQuery(rest.substr(authorityLength));
    if (address.path.empty()) address.path = "/";
    return address;
}

}  // namespace zab
