#include "transfer/browser_access.h"

#include <algorithm>
#include <utility>

#include "binding/browser_thread.h"
#include "page/media_entry.h"
#include "page/passwords.h"
#include "page/user_agent.h"
#include "transfer/ascii_host.h"
#include "web/url.h"

namespace zab {
namespace {

constexpr std::string_view kHttp = "http", kHttps = "https";

bool isOfHttp(std::string_view scheme) noexcept { return scheme == kHttp || scheme == kHttps; }

bool isAscii(std::string_view text) noexcept {
    return std::none_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) > 0x7F; });
}

std::string withoutUserInformation(std::string_view url) {
    const std::string_view host = hostOf(url);
    const auto mark = static_cast<std::size_t>(host.data() - url.data());
    const std::size_t authority = schemeOf(url).size() + 3;  // behind its "://"
    return std::string(url.substr(0, authority)).append(url.substr(mark));
}

}  // namespace

std::string referrerFor(std::string_view page, std::string_view target) {
    const auto address = webAddressOf(page);
    if (!address || !isOfHttp(address->origin.scheme)) return {};
    if (address->origin.scheme == kHttps && !hasScheme(target, kHttps)) return {};
    return withoutUserInformation(withoutFragment(page));
}

bool cookiesCount(std::string_view from, std::string_view target) {
    const auto source = webAddressOf(from);
    const auto address = webAddressOf(target);
    if (!source || !address || source->origin.host != address->origin.host) return false;
    return address->origin.scheme == kHttps ||
           (address->origin.scheme == kHttp && source->origin.scheme != kHttps);
}

PageAccess BrowserAccess::of(std::string_view url) {
    const auto address = webAddressOf(url);
    if (!address) return {};
    return {cookiesFor(*address), loginOf(url, address->origin)};
}

void BrowserAccess::complete(TransferRecord& record) {
    for (std::string* url :
         {&record.url, &record.secondUrl, &record.referrer, &record.pageUrl, &record.cookiesFrom})
        useAsciiHost(*url);
    const std::string_view url = addressOf(record.url);
    record.referrer = referrerFor(record.referrer, url);
    PageAccess own = of(url);
    const bool known = !record.cookies.empty() && cookiesCount(record.cookiesFrom, url) &&
                       (record.secondUrl.empty() || cookiesCount(record.cookiesFrom, record.secondUrl));
    if (!known) record.cookies = std::move(own.cookies);
    if (own.login) {
        record.user = std::move(own.login->user);
        record.password = std::move(own.login->password);
    }
    if (!record.userAgent.empty()) return;
    if (!userAgent_) userAgent_ = lastUserAgent();
    record.userAgent = *userAgent_;
}

std::string BrowserAccess::cookiesFor(const WebAddress& address) {
    if (!isOfHttp(address.origin.scheme) || !onBrowserThread()) return {};
    if (!jar_) jar_.emplace();
    return jar_->of(address, cookieClock());
}

BrowserAccess::Login BrowserAccess::loginOf(std::string_view url, const Origin& origin) {
    const auto [known, isNew] =
        logins_.try_emplace(origin.scheme + "://" + origin.host + ":" + std::to_string(origin.port));
    if (isNew) known->second = passwords().find(url);
    return known->second;
}

void BrowserAccess::useAsciiHost(std::string& url) {
    const std::string_view host = hostOf(addressOf(url));
    if (isAscii(host)) return;
    const auto [known, isNew] = asciiHosts_.try_emplace(std::string(host));
    if (isNew) known->second = asciiHostOf(host).value_or(known->first);
    url.replace(static_cast<std::size_t>(host.data() - url.data()), host.size(), known->second);
}

}  // namespace zab
