#include "settings/exception_servers.h"

#include <optional>

#include "binding/pieces.h"
#include "binding/text.h"

namespace zab {
namespace {

constexpr std::size_t kLongestHost = 255;
constexpr std::size_t kEntryLimit = 255;  // an entry this long or longer matches nothing

std::optional<std::string_view> hostOf(std::string_view url) noexcept {
    const auto colon = url.find(':');
    if (colon == std::string_view::npos || url.size() - colon < 3) return std::nullopt;
    std::string_view host = url.substr(colon + 3);
    host = host.substr(0, host.find_first_of(":/"));
    if (host.size() > kLongestHost) return std::nullopt;
    return host;
}

}  // namespace

bool matchesHostPattern(std::string_view pattern, std::string_view host) noexcept {
    const auto star = pattern.find('*');
    if (star == std::string_view::npos) return equalsIgnoringCase(pattern, host);
    if (!startsWithIgnoringCase(host, pattern.substr(0, star))) return false;
    std::size_t at = star;  // in the host: behind the piece that matched last
    for (const std::string_view piece : piecesOf(pattern.substr(star + 1), '*')) {
        const auto found = findIgnoringCase(host, piece, at);
        if (found == std::string_view::npos) return false;
        at = found + piece.size();
    }
    return true;
}

bool CExceptionServersList::IsListed(std::string_view url) const noexcept {
    if (list_.empty()) return false;
    const auto host = hostOf(url);
    if (!host) return false;
    std::string_view rest = trimLeft(list_, kBlanks);
    while (!rest.empty()) {
        const std::string_view entry = rest.substr(0, rest.find_first_of(kBlanks));
        if (entry.size() < kEntryLimit && matchesHostPattern(entry, *host)) return true;
        rest = trimLeft(rest.substr(entry.size()), kBlanks);
    }
    return false;
}

}  // namespace zab
