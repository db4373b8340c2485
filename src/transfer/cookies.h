// Which cookies of the browser belong to an address, and how they are written in a Cookie header (RFC 6265,
// with the matching rules of its section 5.1).
//
// The cookie manager belongs to the browser's main thread. A cookie that cannot be read is left out; without a
// cookie manager there are none. Cookies are secrets: they go to the download manager and nowhere else.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zab {

/// The cookies for `url` at `nowSeconds` (since 1970), as "name=value" joined by "; " in the browser's order;
/// empty when there are none. Asks the browser's cookie service.
std::string cookiesOf(std::string_view url, std::uint64_t nowSeconds);

/// The same, now.
std::string cookiesOf(std::string_view url);

// The rules, as they are tested. Hosts in lower case or not; paths compared exactly.

/// `domain` is a host of its own, or begins with a dot and covers that host and all below it.
bool domainCovers(std::string_view domain, std::string_view host) noexcept;
/// `folder` is `path` or stands above it: "/a" covers "/a" and "/a/b", not "/ab".
bool folderCovers(std::string_view folder, std::string_view path) noexcept;

}  // namespace zab
