#include "web/url.h"

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
    std::string_view scheme;  // with its ":"
    std::string_view port;    // with the ":" before it
};

constexpr DefaultPort kDefaultPorts[] = {{"http:", ":80"}, {"https:", ":443"}};

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

std::string_view pathOf(std::string_view url) noexcept {
    const std::string_view rest = behindHost(url);
    return rest.substr(0, rest.find_first_of("?#"));
}

std::string_view lastSegmentOf(std::string_view url) noexcept {
    const std::string_view path = pathOf(url);
    return path.substr(path.rfind('/') + 1);  // npos + 1 is 0
}

std::string_view extensionOf(std::string_view name) noexcept {
    const auto dot = name.rfind('.');
    return dot == std::string_view::npos ? std::string_view{} : name.substr(dot + 1);
}

std::optional<std::string_view> queryParameter(std::string_view url, std::string_view name) noexcept {
    const std::string_view beforeFragment = upTo(url, '#');
    const auto mark = beforeFragment.find('?');
    if (mark == std::string_view::npos) return std::nullopt;
    std::string_view rest = beforeFragment.substr(mark + 1);
    while (!rest.empty()) {
        const std::string_view parameter = upTo(rest, '&');
        const std::string_view key = upTo(parameter, '=');
        if (key == name) return parameter.substr(key.size() < parameter.size() ? key.size() + 1 : key.size());
        rest.remove_prefix(parameter.size() < rest.size() ? parameter.size() + 1 : parameter.size());
    }
    return std::nullopt;
}

void NormalizeDefaultPort(std::string& url) {
    const auto mark = url.find(kAuthorityMark);
    if (mark == std::string::npos) return;
    const auto port = url.find_first_of(":/\\", mark + kAuthorityMark.size());
    if (port == std::string::npos) return;
    for (const auto& row : kDefaultPorts) {
        if (!startsWithIgnoringCase(url, row.scheme)) continue;
        if (url.compare(port, row.port.size(), row.port) != 0) return;
        if (url.size() > port + row.port.size() && url[port + row.port.size()] == '/')
            url.erase(port, row.port.size());
        return;
    }
}

}  // namespace zab
