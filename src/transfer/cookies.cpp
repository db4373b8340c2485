#include "transfer/cookies.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "binding/browser_string.h"
#include "binding/text.h"

namespace zab {
namespace {

/// Of a host name in the DNS. A longer one has no cookies, and need not be taken apart.
constexpr std::size_t kLongestHost = 253;

/// The browser writes one byte or four, whatever its version: only the low byte counts.
bool isTrue(std::uint32_t word) noexcept { return (word & 0xFF) != 0; }

InterfacePtr<nsICookie> asCookie(nsISupports* element) noexcept {
    for (const auto& iid : nsICookie::kIIDs)
        if (auto cookie = query<nsICookie>(element, iid)) return cookie;
    return {};
}

/// One text of a cookie; nothing when it cannot be read.
std::optional<std::string> textOf(nsICookie& cookie, nsresult (nsICookie::*get)(nsACString*)) {
    NarrowContainer text;
    if (!text.ready() || failed((cookie.*get)(text.get()))) return std::nullopt;
    // A browser's text has an address even when it is empty; one without could not be seen.
    const std::string_view view = text.view();
    if (view.data() == nullptr) return std::nullopt;
    return std::string(view);
}

InterfacePtr<nsISimpleEnumerator> allCookies() noexcept {
    InterfacePtr<nsISimpleEnumerator> cookies;
    const auto manager = service<nsICookieManager>();
    if (!manager) return cookies;
    nsISimpleEnumerator* given = nullptr;
    if (failed(manager->GetEnumerator(&given))) return cookies;
    cookies.reset(given);
    return cookies;
}

/// Nothing at the end, or when the enumerator fails.
InterfacePtr<nsISupports> nextOf(nsISimpleEnumerator& cookies) noexcept {
    InterfacePtr<nsISupports> element;
    std::uint32_t more = 0;
    if (failed(cookies.HasMoreElements(&more)) || !isTrue(more)) return element;
    nsISupports* given = nullptr;
    if (failed(cookies.GetNext(&given))) return element;
    element.reset(given);
    return element;
}

/// `folder` is `path` or stands above it: "/a" covers "/a" and "/a/b", not "/ab".
bool folderCovers(std::string_view folder, std::string_view path) noexcept {
    if (!path.starts_with(folder)) return false;
    return folder.size() == path.size() || folder.ends_with('/') || path[folder.size()] == '/';
}

}  // namespace

CookieJar::CookieJar() {
    const auto cookies = allCookies();
    if (!cookies) return;
    while (const auto element = nextOf(*cookies.get()))
        if (auto cookie = asCookie(element.get())) add(std::move(cookie));
}

void CookieJar::add(InterfacePtr<nsICookie> cookie) {
    const auto domain = textOf(*cookie.get(), &nsICookie::GetHost);
    if (!domain || domain->empty()) return;
    byDomain_[lowered(*domain)].push_back(cookies_.size());
    cookies_.push_back({std::move(cookie), std::nullopt});
}

std::optional<CookieJar::Contents> CookieJar::read(nsICookie& cookie) {
    auto path = textOf(cookie, &nsICookie::GetPath);
    std::uint32_t secure = 0;
    std::uint64_t expires = 0;
    if (!path || failed(cookie.GetIsSecure(&secure)) || failed(cookie.GetExpires(&expires)))
        return std::nullopt;
    const auto name = textOf(cookie, &nsICookie::GetName);
    const auto value = name ? textOf(cookie, &nsICookie::GetValue) : std::nullopt;
    if (!value) return std::nullopt;
    return Contents{*std::move(path), *name + "=" + *value, isTrue(secure), expires};
}

/// Those of the host itself, and of every domain (with its dot) that it is or lies below.
const CookieJar::Places& CookieJar::ofHost(const std::string& host) {
    const auto [known, isNew] = byHost_.try_emplace(host);
    Places& places = known->second;
    if (!isNew || host.size() > kLongestHost) return places;
    const auto take = [&](const std::string& domain) {
        if (const auto found = byDomain_.find(domain); found != byDomain_.end())
            places.insert(places.end(), found->second.begin(), found->second.end());
    };
    take(host);
    take("." + host);
    for (auto dot = host.find('.'); dot != std::string::npos; dot = host.find('.', dot + 1))
        take(host.substr(dot));
    std::sort(places.begin(), places.end());
    places.erase(std::unique(places.begin(), places.end()), places.end());
    for (const std::size_t place : places) {
        Cookie& cookie = cookies_[place];
        if (!cookie.object) continue;
        cookie.contents = read(*cookie.object.get());
        cookie.object.reset();
    }
    return places;
}

std::string CookieJar::of(const WebAddress& address, std::uint64_t nowSeconds) {
    std::string pairs;
    for (const std::size_t place : ofHost(address.origin.host)) {
        const auto& cookie = cookies_[place].contents;
        if (!cookie || !folderCovers(cookie->path, address.path)) continue;
        if (cookie->secure && address.origin.scheme != "https") continue;
        if (cookie->expires != 0 && cookie->expires <= nowSeconds) continue;
        if (!pairs.empty()) pairs += "; ";
        pairs += cookie->pair;
    }
    return pairs;
}

std::string cookiesOf(std::string_view url) {
    const auto address = webAddressOf(url);
    return address ? CookieJar().of(*address, cookieClock()) : std::string{};
}

std::uint64_t cookieClock() noexcept {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::seconds>(now).count());
}

}  // namespace zab
