// UTF-8 and UTF-16, portably. What is not well formed becomes U+FFFD: one for each byte of an ill-formed UTF-8
// sequence, one for each surrogate without its partner.
#pragma once

#include <string>
#include <string_view>

namespace zab {

constexpr bool isHighSurrogate(char32_t unit) noexcept { return unit >= 0xD800 && unit <= 0xDBFF; }
constexpr bool isLowSurrogate(char32_t unit) noexcept { return unit >= 0xDC00 && unit <= 0xDFFF; }
/// The code point that a high and a low surrogate are together.
constexpr char32_t ofSurrogates(char32_t high, char32_t low) noexcept {
    return 0x10000 + ((high - 0xD800) << 10) + (low - 0xDC00);
}

std::u16string utf16FromUtf8(std::string_view text);
std::string utf8FromUtf16(std::u16string_view text);

/// `text` with each byte of an ill-formed sequence replaced.
std::string wellFormedUtf8(std::string_view text);

/// Appends one code point (a surrogate or a value beyond U+10FFFF becomes U+FFFD).
void appendUtf8(std::string& text, char32_t codePoint);
void appendUtf16(std::u16string& text, char32_t codePoint);

}  // namespace zab
