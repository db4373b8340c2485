// Text as views: ASCII letter case, blanks, and numbers read the way C's scanf reads them.
//
// Nothing here allocates or looks behind a view. Letters, digits and letter case are ASCII only; a byte of
// 128 or more never equals anything but itself. Templates serve `char` and `char16_t` alike.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zab {

inline constexpr std::string_view kWhiteSpace = " \t\r\n";
inline constexpr std::string_view kBlanks = " \t\r";  // what may stand before a header line or value
inline constexpr std::string_view kSpaceAndTab = " \t";

template <class C>
constexpr bool isDigit(C c) noexcept {
    return c >= C('0') && c <= C('9');
}

template <class C>
constexpr bool isLetter(C c) noexcept {
    return (c >= C('a') && c <= C('z')) || (c >= C('A') && c <= C('Z'));
}

template <class C>
constexpr C toLower(C c) noexcept {
    return c >= C('A') && c <= C('Z') ? static_cast<C>(c + ('a' - 'A')) : c;
}

template <class C>
constexpr C toUpper(C c) noexcept {
    return c >= C('a') && c <= C('z') ? static_cast<C>(c - ('a' - 'A')) : c;
}

template <class C>
constexpr bool isWhiteSpace(C c) noexcept {
    return c == C(' ') || c == C('\t') || c == C('\r') || c == C('\n');
}

/// The value of a hexadecimal digit, or -1.
template <class C>
constexpr int hexValue(C c) noexcept {
    if (isDigit(c)) return static_cast<int>(c - C('0'));
    const C lower = toLower(c);
    return lower >= C('a') && lower <= C('f') ? static_cast<int>(lower - C('a')) + 10 : -1;
}

template <class C>
constexpr bool equalsIgnoringCase(std::basic_string_view<C> a, std::basic_string_view<C> b) noexcept {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (toLower(a[i]) != toLower(b[i])) return false;
    return true;
}

template <class C>
constexpr bool startsWithIgnoringCase(std::basic_string_view<C> text,
                                      std::basic_string_view<C> prefix) noexcept {
    return text.size() >= prefix.size() && equalsIgnoringCase(text.substr(0, prefix.size()), prefix);
}

template <class C>
constexpr bool endsWithIgnoringCase(std::basic_string_view<C> text, std::basic_string_view<C> suffix) noexcept {
    return text.size() >= suffix.size() && equalsIgnoringCase(text.substr(text.size() - suffix.size()), suffix);
}

constexpr bool equalsIgnoringCase(std::string_view a, std::string_view b) noexcept {
    return equalsIgnoringCase<char>(a, b);
}
constexpr bool startsWithIgnoringCase(std::string_view text, std::string_view prefix) noexcept {
    return startsWithIgnoringCase<char>(text, prefix);
}
constexpr bool endsWithIgnoringCase(std::string_view text, std::string_view suffix) noexcept {
    return endsWithIgnoringCase<char>(text, suffix);
}

template <std::size_t Count>
constexpr bool isOneOfIgnoringCase(std::string_view text, const std::string_view (&list)[Count]) noexcept {
    for (const std::string_view item : list)
        if (equalsIgnoringCase(text, item)) return true;
    return false;
}

template <std::size_t Count>
constexpr bool startsWithOneOf(std::string_view text, const std::string_view (&prefixes)[Count]) noexcept {
    for (const std::string_view prefix : prefixes)
        if (startsWithIgnoringCase(text, prefix)) return true;
    return false;
}

constexpr bool contains(std::string_view text, std::string_view piece) noexcept {
    return text.find(piece) != std::string_view::npos;
}

/// Position of `piece` in `text` whatever the letter case, or npos.
std::size_t findIgnoringCase(std::string_view text, std::string_view piece, std::size_t from = 0) noexcept;

constexpr std::string_view trimLeft(std::string_view text, std::string_view set = kWhiteSpace) noexcept {
    const auto first = text.find_first_not_of(set);
    return first == std::string_view::npos ? std::string_view{} : text.substr(first);
}

constexpr std::string_view trimRight(std::string_view text, std::string_view set = kWhiteSpace) noexcept {
    const auto last = text.find_last_not_of(set);
    return last == std::string_view::npos ? std::string_view{} : text.substr(0, last + 1);
}

constexpr std::string_view trim(std::string_view text, std::string_view set = kWhiteSpace) noexcept {
    return trimRight(trimLeft(text, set), set);
}

/// What stands before the first `mark`; the whole text when there is none.
template <class C>
constexpr std::basic_string_view<C> upTo(std::basic_string_view<C> text, C mark) noexcept {
    return text.substr(0, text.find(mark));
}
constexpr std::string_view upTo(std::string_view text, char mark) noexcept { return upTo<char>(text, mark); }

/// Text that somebody copied and terminated ends at its first NUL.
template <class C>
constexpr std::basic_string_view<C> upToNul(std::basic_string_view<C> text) noexcept {
    return upTo<C>(text, C(0));
}
constexpr std::string_view upToNul(std::string_view text) noexcept { return upToNul<char>(text); }

std::string lowered(std::string_view text);
std::string uppered(std::string_view text);

// Numbers, as scanf("%d"), ("%I64d"), ("%x") and ("%lf") read them from the start of `text`: leading
// white space of C, a sign, then the longest valid prefix. A value out of range becomes the nearest limit
// (a double becomes infinite or zero). False leaves `field` as it was: no number starts here.

bool scanInt32(std::string_view text, std::int32_t& field) noexcept;
bool scanInt64(std::string_view text, std::int64_t& field) noexcept;
bool scanHex32(std::string_view text, std::uint32_t& field) noexcept;
/// Decimal only: no hexadecimal, no "inf", no "nan"; "1e" is 1.
bool scanDouble(std::string_view text, double& field);

/// The value of the `count` hexadecimal digits (at most 8) at the very start of `text`; nothing when there are
/// fewer.
template <class C>
constexpr std::optional<std::uint32_t> hexDigits(std::basic_string_view<C> text, std::size_t count) noexcept {
    if (text.size() < count) return std::nullopt;
    std::uint32_t value = 0;
    for (const C c : text.substr(0, count)) {
        const int digit = hexValue(c);
        if (digit < 0) return std::nullopt;
        value = value << 4 | static_cast<std::uint32_t>(digit);
    }
    return value;
}
constexpr std::optional<std::uint32_t> hexDigits(std::string_view text, std::size_t count) noexcept {
    return hexDigits<char>(text, count);
}

/// Decimal digits at the very start of `text` (no blanks, no sign); a larger value becomes `limit`.
/// No digit there: nothing.
template <class C>
constexpr std::optional<std::uint64_t> leadingDigits(std::basic_string_view<C> text,
                                                     std::uint64_t limit = UINT64_MAX) noexcept {
    if (text.empty() || !isDigit(text.front())) return std::nullopt;
    std::uint64_t value = 0;
    for (const C c : text) {
        if (!isDigit(c)) break;
        const auto digit = static_cast<std::uint64_t>(c - C('0'));
        if (digit > limit || value > (limit - digit) / 10) return limit;
        value = value * 10 + digit;
    }
    return value;
}
constexpr std::optional<std::uint64_t> leadingDigits(std::string_view text,
                                                     std::uint64_t limit = UINT64_MAX) noexcept {
    return leadingDigits<char>(text, limit);
}

}  // namespace zab
