// How the browser itself would ask for an address: the one place that answers for links, batches, the content
// policy and chosen media, of which no request was seen.
//
// One object serves one transfer or a batch of them: the cookie jar is read once, and each host is asked about
// once. Cookies can be had on the browser's main thread alone; elsewhere there are none but those known before.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "transfer/cookies.h"
#include "transfer/extra_data.h"
#include "transfer/transfer_record.h"

namespace zab {

class BrowserAccess {
  public:
    /// What the browser holds for `url` now. Nothing for a text that is no absolute address.
    PageAccess of(std::string_view url);

    /// Puts a record of which no request was seen right, so that it asks as the browser would. Takes, as UTF-8:
    ///   url, secondUrl  what is to be had; a media link keeps its scheme
    ///   referrer        the page that named it
    ///   cookies         those that are known for the host of `cookiesFrom`
    ///   userAgent       the one that is known; empty: the browser's last one
    /// Hosts become ASCII. The referrer loses its fragment and user information, and is left out where a
    /// browser sends none. Cookies that do not belong to the address give way to its own; the login is that of
    /// its origin.
    void complete(TransferRecord& record);

  private:
    using Login = std::optional<BasicCredentials>;

    std::string cookiesFor(const WebAddress& address);
    Login loginOf(std::string_view url, const Origin& origin);
    void useAsciiHost(std::string& url);

    std::optional<CookieJar> jar_;
    std::unordered_map<std::string, Login> logins_;            // by origin
    std::unordered_map<std::string, std::string> asciiHosts_;  // by host
    std::optional<std::string> userAgent_;
};

/// What a browser tells `target` of the page that named it: its address without fragment and user information;
/// nothing from an https page to another scheme, and nothing of what is no page of the web.
std::string referrerFor(std::string_view page, std::string_view target);

/// Whether cookies that are known for the host of `from` may go to `target`: the same host, and from https to
/// https alone.
bool cookiesCount(std::string_view from, std::string_view target);

}  // namespace zab
