#include "web/url.h"

#include "binding/pieces.h"
#include "binding/text.h"

namespace zab {
namespace {

constexpr std::string_view kAuthorityMark = "://";

/// Where host and port begin and end, in characters of the URL; both behind the scheme when there is none.
struct AuthoritySpan {
    std::size_t begin, end;
};

AuthoritySpan authoritySpan(std::string_view url) noexcept {
    const std::size_t scheme = schemeOf(url).size();
    if (url.substr(scheme, kAuthorityMark.size()) != kAuthorityMark) {
        const std::size_t behind = scheme != 0 ? scheme + 1 : 0;
        return {behind, behind};
    }
    const std::size_t begin = scheme + kAuthorityMark.size();
    const std::size_t end = url.find_first_of("/?#", begin);
    return {begin, end == std::string_view::npos ? url.size() : end};
}

struct DefaultPort {
    std::string_view scheme;
    std::uint16_t port;
};
constexpr DefaultPort kDefaultPorts[] = {{"http", 80}, {"https", 443}, {"ftp", 21}};

constexpr std::string_view kNormalizedSchemes[] = {"http", "https"};

}  // namespace

std::string_view schemeOf(std::string_view url) noexcept {
    const auto end = url.find_first_of(":/?#");
    return end != std::string_view::npos && url[end] == ':' ? url.substr(0, end) : std::string_view{};
}

bool hasScheme(std::string_view url, std::string_view scheme) noexcept {
    return equalsIgnoringCase(schemeOf(url), scheme);
}

std::string_view hostOf(std::string_view url) noexcept {
    const auto [begin, end] = authoritySpan(url);
    std::string_view host = url.substr(begin, end - begin);
    host.remove_prefix(host.rfind('@') + 1);  // npos + 1 is 0
    if (!host.empty() && host.front() == '[') {
        const auto bracket = host.find(']');
        if (bracket != std::string_view::npos) return host.substr(0, bracket + 1);
    }
    return upTo(host, ':');
}

bool isHostOrBelow(std::string_view host, std::string_view name) noexcept {
    if (!endsWithIgnoringCase(host, name)) return false;
    return host.size() == name.size() || host[host.size() - name.size() - 1] == '.';
}

std::string_view behindHost(std::string_view url) noexcept { return url.substr(authoritySpan(url).end); }

std::string_view withoutFragment(std::string_view url) noexcept { return upTo(url, '#'); }

std::string_view beforeQuery(std::string_view url) noexcept { return url.substr(0, url.find_first_of("?#")); }

std::string_view directoryOf(std::string_view url) noexcept {
    const std::string_view path = beforeQuery(url);
    return path.substr(0, path.rfind('/') + 1);  // npos + 1 is 0
}

std::string_view pathOf(std::string_view url) noexcept { return beforeQuery(behindHost(url)); }

std::string_view lastSegmentOf(std::string_view url) noexcept {
    const std::string_view path = pathOf(url);
    return path.substr(path.rfind('/') + 1);  // npos + 1 is 0
}

std::string_view extensionOf(std::string_view name) noexcept {
    const auto dot = name.rfind('.');
    return dot == std::string_view::npos ? std::string_view{} : name.substr(dot + 1);
}

std::optional<std::string_view> queryParameter(std::string_view url, std::string_view name) noexcept {
    const std::string_view beforeFragment = withoutFragment(url);
    const auto mark = beforeFragment.find('?');
    if (mark == std::string_view::npos) return std::nullopt;
    for (const std::string_view parameter : piecesOf(beforeFragment.substr(mark + 1), '&')) {
        const std::string_view key = upTo(parameter, '=');
        if (key == name) return parameter.substr(key.size() < parameter.size() ? key.size() + 1 : key.size());
    }
    return std::nullopt;
}

std::uint16_t defaultPortOf(std::string_view scheme) noexcept {
    for (const DefaultPort& row : kDefaultPorts)
        if (row.scheme == scheme) return row.port;
    return 0;
}

void NormalizeDefaultPort(std::string& url) {
    const std::string_view scheme = upTo(url, ':');
    if (!isOneOfIgnoringCase(scheme, kNormalizedSchemes)) return;
    const auto mark = url.find(kAuthorityMark);
    if (mark == std::string::npos) return;
    const auto port = url.find_first_of(":/\\", mark + kAuthorityMark.size());
    if (port == std::string::npos) return;
    const std::string written = ':' + std::to_string(defaultPortOf(lowered(scheme)));
    if (std::string_view(url).substr(port).starts_with(written + '/')) url.erase(port, written.size());
}

}  // namespace zab
