#include "binding/text.h"

#include <charconv>
#include <cstdlib>
#include <limits>

namespace zab {
namespace {

constexpr std::string_view kScanfWhiteSpace = " \t\n\v\f\r";

struct SignedDigits {
    bool negative = false;
    std::string_view rest;
};

SignedDigits readSign(std::string_view text) noexcept {
    text = trimLeft(text, kScanfWhiteSpace);
    if (text.empty() || (text.front() != '-' && text.front() != '+')) return {false, text};
    return {text.front() == '-', text.substr(1)};
}

/// A whole number, brought back to the nearest limit when it lies beyond.
template <class Int>
bool scanWhole(std::string_view text, Int& field) noexcept {
    const auto [negative, digits] = readSign(text);
    if (digits.empty() || !isDigit(digits.front())) return false;
    constexpr auto kHigh = static_cast<std::uint64_t>(std::numeric_limits<Int>::max());
    const auto magnitude = leadingDigits(digits, negative ? kHigh + 1 : kHigh);
    field = static_cast<Int>(negative ? std::uint64_t{0} - *magnitude : *magnitude);
    return true;
}

std::size_t digitRun(std::string_view text, std::size_t from) noexcept {
    std::size_t end = from;
    while (end < text.size() && isDigit(text[end])) ++end;
    return end - from;
}

/// Length of the decimal floating-point number (without sign) at the start of `text`; 0: none.
std::size_t floatingLength(std::string_view text) noexcept {
    const std::size_t whole = digitRun(text, 0);
    std::size_t end = whole;
    std::size_t fraction = 0;
    if (end < text.size() && text[end] == '.') {
        fraction = digitRun(text, end + 1);
        end += 1 + fraction;
    }
    if (whole + fraction == 0) return 0;
    if (end < text.size() && toLower(text[end]) == 'e') {
        std::size_t power = end + 1;
        if (power < text.size() && (text[power] == '+' || text[power] == '-')) ++power;
        const std::size_t digits = digitRun(text, power);
        if (digits != 0) end = power + digits;
    }
    return end;
}

template <char (*Change)(char) noexcept>
std::string changed(std::string_view text) {
    std::string result(text);
    for (char& c : result) c = Change(c);
    return result;
}

}  // namespace

std::size_t findIgnoringCase(std::string_view text, std::string_view piece, std::size_t from) noexcept {
    if (piece.size() > text.size()) return std::string_view::npos;
    for (std::size_t at = from; at + piece.size() <= text.size(); ++at)
        if (equalsIgnoringCase(text.substr(at, piece.size()), piece)) return at;
    return std::string_view::npos;
}

std::string lowered(std::string_view text) { return changed<&toLower<char>>(text); }
std::string uppered(std::string_view text) { return changed<&toUpper<char>>(text); }

bool scanInt32(std::string_view text, std::int32_t& field) noexcept { return scanWhole(text, field); }
bool scanInt64(std::string_view text, std::int64_t& field) noexcept { return scanWhole(text, field); }

bool scanHex32(std::string_view text, std::uint32_t& field) noexcept {
    auto [negative, digits] = readSign(text);
    if (digits.size() > 2 && digits[0] == '0' && toLower(digits[1]) == 'x' && hexValue(digits[2]) >= 0)
        digits.remove_prefix(2);
    if (digits.empty() || hexValue(digits.front()) < 0) return false;
    std::uint64_t value = 0;
    for (const char c : digits) {
        const int digit = hexValue(c);
        if (digit < 0) break;
        value = value * 16 + static_cast<std::uint64_t>(digit);
        if (value > UINT32_MAX) value = UINT32_MAX;
    }
    field = negative ? 0 : static_cast<std::uint32_t>(value);
    return true;
}

bool scanDouble(std::string_view text, double& field) {
    const auto [negative, rest] = readSign(text);
    const std::string_view number = rest.substr(0, floatingLength(rest));
    if (number.empty()) return false;
    double value = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
    // from_chars does not tell too large from too small; strtod does, and the case is rare.
    if (error == std::errc::result_out_of_range) value = std::strtod(std::string(number).c_str(), nullptr);
    field = negative ? -value : value;
    return true;
}

}  // namespace zab
