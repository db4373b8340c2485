#include "transfer/cookies.h"

#include <chrono>

#include "binding/browser_string.h"
#include "binding/interface_ptr.h"
#include "binding/interfaces/cookies.h"
#include "binding/text.h"
#include "web/web_address.h"

namespace zab {
namespace {

/// The browser writes one byte or four, whatever its version: only the low byte counts.
bool isTrue(std::uint32_t word) noexcept { return (word & 0xFF) != 0; }

InterfacePtr<nsICookie> asCookie(nsISupports* element) noexcept {
    for (const auto& iid : nsICookie::kIIDs)
        if (auto cookie = query<nsICookie>(element, iid)) return cookie;
    return {};
}

/// One text of a cookie, held by `text`; clears `readable` when it cannot be read.
std::string_view textOf(nsICookie& cookie, nsresult (nsICookie::*get)(nsACString*), NarrowContainer& text,
                        bool& readable) {
    if (!readable || !text.ready() || failed((cookie.*get)(text.get()))) {
        readable = false;
        return {};
    }
    // A browser's text has an address even when it is empty; one without could not be seen.
    const std::string_view view = text.view();
    readable = view.data() != nullptr;
    return view;
}

/// Tests what refuses most cookies first: a jar holds thousands, an address has a handful.
bool belongsTo(nsICookie& cookie, const WebAddress& address, std::uint64_t nowSeconds) {
    NarrowContainer text;
    bool readable = true;
    if (!domainCovers(textOf(cookie, &nsICookie::GetHost, text, readable), address.origin.host)) return false;
    if (!folderCovers(textOf(cookie, &nsICookie::GetPath, text, readable), address.path)) return false;
    std::uint32_t secure = 0;
    std::uint64_t expires = 0;
    if (!readable || failed(cookie.GetIsSecure(&secure)) || failed(cookie.GetExpires(&expires))) return false;
    if (isTrue(secure) && address.origin.scheme != "https") return false;
    return expires == 0 || expires > nowSeconds;
}

void appendPair(std::string& pairs, nsICookie& cookie) {
    NarrowContainer name;
    NarrowContainer value;
    bool readable = true;
    const auto nameText = textOf(cookie, &nsICookie::GetName, name, readable);
    const auto valueText = textOf(cookie, &nsICookie::GetValue, value, readable);
    if (!readable) return;
    if (!pairs.empty()) pairs += "; ";
    pairs.append(nameText).append("=").append(valueText);
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

}  // namespace

bool domainCovers(std::string_view domain, std::string_view host) noexcept {
    if (!domain.starts_with('.')) return !domain.empty() && equalsIgnoringCase(domain, host);
    return equalsIgnoringCase(domain.substr(1), host) || endsWithIgnoringCase(host, domain);
}

bool folderCovers(std::string_view folder, std::string_view path) noexcept {
    if (!path.starts_with(folder)) return false;
    return folder.size() == path.size() || folder.ends_with('/') || path[folder.size()] == '/';
}

std::string cookiesOf(std::string_view url, std::uint64_t nowSeconds) {
    std::string pairs;
    const auto address = webAddressOf(url);
    if (!address) return pairs;
    const auto cookies = allCookies();
    if (!cookies) return pairs;
    while (const auto element = nextOf(*cookies.get())) {
        const auto cookie = asCookie(element.get());
        if (cookie && belongsTo(*cookie.get(), *address, nowSeconds)) appendPair(pairs, *cookie.get());
    }
    return pairs;
}

std::string cookiesOf(std::string_view url) {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return cookiesOf(url,
                     static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::seconds>(now).count()));
}

}  // namespace zab
