#include "web/character_references.h"

#include <algorithm>
#include <iterator>

#include "binding/text.h"
#include "binding/utf.h"
#include "web/character_reference_table.h"

namespace zab {
namespace {

/// A row's name begins `text`; the longest such row, or null. Every step gives up a row that shares less with
/// the text than the one before, so that it ends after a few of them.
const CharacterReference* longestNameAt(std::string_view text) noexcept {
    std::string_view wanted = text.substr(0, kLongestReferenceName);
    while (!wanted.empty()) {
        const auto behind = std::upper_bound(
            std::begin(kCharacterReferences), std::end(kCharacterReferences), wanted,
            [](std::string_view name, const CharacterReference& row) { return name < row.name; });
        if (behind == std::begin(kCharacterReferences)) return nullptr;
        const CharacterReference& row = *std::prev(behind);
        const auto shared = std::mismatch(wanted.begin(), wanted.end(), row.name.begin(), row.name.end());
        const auto length = static_cast<std::size_t>(shared.first - wanted.begin());
        if (length == row.name.size()) return &row;
        wanted = wanted.substr(0, length);
    }
    return nullptr;
}

// What old pages mean by the numbers of the C1 controls: the characters of windows-1252. 0: the number itself.
constexpr char16_t kWindows1252[32] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178,
};

char32_t characterOf(std::uint32_t number) noexcept {
    constexpr char32_t kReplacement = 0xFFFD;
    if (number == 0) return kReplacement;
    if (number < 0x80 || number > 0x9F) return number;  // no character: replaced where it is written
    const char16_t meant = kWindows1252[number - 0x80];
    return meant != 0 ? meant : static_cast<char32_t>(number);
}

/// `text` stands behind "&#". Gives how much of it the number takes; 0: it is none.
std::size_t appendNumber(std::string& result, std::string_view text) {
    constexpr std::uint32_t kBeyond = 0x110000;
    const bool isHex = !text.empty() && toLower(text.front()) == 'x';
    const std::uint32_t base = isHex ? 16 : 10;
    std::size_t at = isHex ? 1 : 0;
    const std::size_t digits = at;
    std::uint32_t number = 0;
    for (; at < text.size(); ++at) {
        const int digit = isHex || isDigit(text[at]) ? hexValue(text[at]) : -1;
        if (digit < 0) break;
        number = std::min(kBeyond, number * base + static_cast<std::uint32_t>(digit));
    }
    if (at == digits) return 0;
    appendUtf8(result, characterOf(number));
    return at < text.size() && text[at] == ';' ? at + 1 : at;
}

/// `text` stands behind "&". Gives how much of it the name takes; 0: it is none.
std::size_t appendNamed(std::string& result, std::string_view text, ReferencePlace place) {
    const CharacterReference* row = longestNameAt(text);
    if (row == nullptr) return 0;
    const std::size_t length = row->name.size();
    if (place == ReferencePlace::attribute && row->name.back() != ';' && length < text.size()) {
        const char next = text[length];
        if (next == '=' || isLetter(next) || isDigit(next)) return 0;
    }
    appendUtf8(result, row->first);
    if (row->second != 0) appendUtf8(result, row->second);
    return length;
}

}  // namespace

std::string decodeCharacterReferences(std::string_view text, ReferencePlace place) {
    std::string result;
    result.reserve(text.size());
    while (true) {
        const std::string_view plain = upTo(text, '&');
        result += plain;
        if (plain.size() == text.size()) return result;
        text.remove_prefix(plain.size() + 1);
        const bool isNumber = text.starts_with('#');
        const std::size_t taken =
            isNumber ? appendNumber(result, text.substr(1)) : appendNamed(result, text, place);
        if (taken == 0) result += '&';
        text.remove_prefix(taken != 0 && isNumber ? taken + 1 : taken);
    }
}

}  // namespace zab
