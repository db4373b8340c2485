// Which cookies of the browser belong to an address, and how they are written in a Cookie header (RFC 6265,
// with the matching rules of its section 5.1).
//
// The cookie manager belongs to the browser's main thread. A cookie that cannot be read is left out; without a
// cookie manager there are none. Cookies are secrets: they go to the download manager and nowhere else.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "binding/interface_ptr.h"
#include "binding/interfaces/cookies.h"
#include "web/web_address.h"

namespace zab {

/// The browser's cookies as they are when it is made, for one address or for thousands: each cookie is asked
/// for its host once, and for the rest once when an address of that host is asked about. For the browser's main
/// thread.
class CookieJar {
  public:
    CookieJar();

    /// The cookies for an address at `nowSeconds` (since 1970), as "name=value" joined by "; " in the browser's
    /// order; empty when there are none.
    std::string of(const WebAddress& address, std::uint64_t nowSeconds);

  private:
    struct Contents {
        std::string path, pair;
        bool secure;
        std::uint64_t expires;  // seconds since 1970; 0: with the session
    };
    struct Cookie {
        InterfacePtr<nsICookie> object;  // until it is read
        std::optional<Contents> contents;
    };
    using Places = std::vector<std::size_t>;  // in `cookies_`, growing

    static std::optional<Contents> read(nsICookie& cookie);
    void add(InterfacePtr<nsICookie> cookie);
    const Places& ofHost(const std::string& host);

    std::vector<Cookie> cookies_;  // in the browser's order
    std::unordered_map<std::string, Places> byDomain_, byHost_;
};

/// The cookies for `url` now.
std::string cookiesOf(std::string_view url);

/// Seconds since 1970.
std::uint64_t cookieClock() noexcept;

}  // namespace zab
