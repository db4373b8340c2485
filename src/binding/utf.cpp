#include "binding/utf.h"

#include <cstddef>
#include <cstdint>

namespace zab {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

struct Decoded {
    char32_t codePoint;
    std::size_t length;  // bytes or units used
};

constexpr bool isSurrogate(char32_t c) noexcept { return isHighSurrogate(c) || isLowSurrogate(c); }

/// The code point at the start of `text`, which is not empty; an ill-formed one is U+FFFD and one byte long.
Decoded decodeUtf8(std::string_view text) noexcept {
    constexpr Decoded kIllFormed{kReplacement, 1};
    static constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const auto lead = static_cast<std::uint8_t>(text[0]);
    if (lead < 0x80) return {lead, 1};
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return kIllFormed;
    char32_t value = lead & (0xFFu >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        const auto next = static_cast<std::uint8_t>(text[i]);
        if ((next & 0xC0) != 0x80) return kIllFormed;
        value = value << 6 | (next & 0x3F);
    }
    if (value < kSmallest[length] || value > 0x10FFFF || isSurrogate(value)) return kIllFormed;
    return {value, length};
}

Decoded decodeUtf16(std::u16string_view text) noexcept {
    const char32_t unit = text[0];
    if (!isSurrogate(unit)) return {unit, 1};
    const bool paired = isHighSurrogate(unit) && text.size() > 1 && isLowSurrogate(text[1]);
    if (!paired) return {kReplacement, 1};
    return {ofSurrogates(unit, text[1]), 2};
}

template <class Out, class In, class Decode, class Append>
Out convert(In text, Decode decode, Append append) {
    Out result;
    result.reserve(text.size());
    while (!text.empty()) {
        const Decoded one = decode(text);
        append(result, one.codePoint);
        text.remove_prefix(one.length);
    }
    return result;
}

}  // namespace

void appendUtf8(std::string& text, char32_t codePoint) {
    if (isSurrogate(codePoint) || codePoint > 0x10FFFF) codePoint = kReplacement;
    const auto put = [&](char32_t byte) { text += static_cast<char>(static_cast<std::uint8_t>(byte)); };
    const auto continuation = [&](int shift) { put(0x80 | ((codePoint >> shift) & 0x3F)); };
    if (codePoint < 0x80) {
        put(codePoint);
    } else if (codePoint < 0x800) {
        put(0xC0 | codePoint >> 6);
        continuation(0);
    } else if (codePoint < 0x10000) {
        put(0xE0 | codePoint >> 12);
        continuation(6);
        continuation(0);
    } else {
        put(0xF0 | codePoint >> 18);
        continuation(12);
        continuation(6);
        continuation(0);
    }
}

void appendUtf16(std::u16string& text, char32_t codePoint) {
    if (isSurrogate(codePoint) || codePoint > 0x10FFFF) codePoint = kReplacement;
    if (codePoint < 0x10000) {
        text += static_cast<char16_t>(codePoint);
        return;
    }
    codePoint -= 0x10000;
    text += static_cast<char16_t>(0xD800 + (codePoint >> 10));
    text += static_cast<char16_t>(0xDC00 + (codePoint & 0x3FF));
}

std::u16string utf16FromUtf8(std::string_view text) {
    return convert<std::u16string>(text, decodeUtf8, appendUtf16);
}
std::string utf8FromUtf16(std::u16string_view text) {
    return convert<std::string>(text, decodeUtf16, appendUtf8);
}
std::string wellFormedUtf8(std::string_view text) { return convert<std::string>(text, decodeUtf8, appendUtf8); }

}  // namespace zab
