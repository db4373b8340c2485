// References resolved against a base address (RFC 3986 section 5), and the clean-up that browsers do first.
//
// The resolver is strict (a reference with the base's own scheme is still absolute), drops surplus "..", and
// takes bytes as they stand: nothing is decoded, encoded or lower-cased. What a page's author writes goes
// through `cleanedReference` first. Cost is linear in both texts.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zab {

/// A reference in its five parts, as views into it. An absent part differs from an empty one: "a?" has a query.
struct UrlReference {
    std::string_view scheme;  // without its ":"; empty: none
    std::optional<std::string_view> authority;
    std::string_view path;
    std::optional<std::string_view> query;
    std::optional<std::string_view> fragment;
};

/// Takes any text apart; what does not begin with a scheme by its grammar has none.
UrlReference splitReference(std::string_view reference) noexcept;

/// `reference` as an address. It has no scheme only when neither text has one.
std::string resolveUrl(std::string_view base, std::string_view reference);

/// Whether links with this scheme (any case) are downloads: http, https, ftp, mms.
bool isWebScheme(std::string_view scheme) noexcept;

/// A reference as browsers read it: without surrounding white space, tabs and line ends inside; "\" before the
/// query is "/"; surplus or missing slashes behind a scheme of the web or in front of a host are put right;
/// blanks, controls, quotes, angle brackets and bytes above 127 behind the host are percent-encoded.
/// `baseScheme` is the scheme that a relative reference will take.
std::string cleanedReference(std::string_view baseScheme, std::string_view written);

/// Each "%" with two hexadecimal digits behind it becomes their byte.
std::string withoutEscapes(std::string_view text);

}  // namespace zab
