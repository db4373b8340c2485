#include "web/json_text.h"

#include "binding/text.h"
#include "binding/utf.h"

namespace zab {
namespace {

constexpr std::size_t kDigits = 4;

}  // namespace

std::optional<char32_t> takeUnicodeEscape(std::string_view& text) noexcept {
    const std::optional<char32_t> unit = hexDigits(text.substr(1), kDigits);
    if (!unit) return std::nullopt;
    text.remove_prefix(1 + kDigits);
    if (!isHighSurrogate(*unit) || !text.starts_with("\\u")) return unit;
    const std::optional<char32_t> low = hexDigits(text.substr(2), kDigits);
    if (!low || !isLowSurrogate(*low)) return unit;
    text.remove_prefix(2 + kDigits);
    return ofSurrogates(*unit, *low);
}

std::optional<std::string> jsonString(std::string_view text) {
    constexpr std::string_view kEscapes = "\"\\/bfnrt", kMeanings = "\"\\/\b\f\n\r\t";
    if (!text.starts_with('"')) return std::nullopt;
    text.remove_prefix(1);
    std::string content;
    while (!text.empty()) {
        const char c = text.front();
        text.remove_prefix(1);
        if (c == '"') return content;
        if (c != '\\') {
            content += c;
            continue;
        }
        if (text.empty()) break;
        if (const auto known = kEscapes.find(text.front()); known != std::string_view::npos) {
            content += kMeanings[known];
            text.remove_prefix(1);
            continue;
        }
        const auto codePoint = text.front() == 'u' ? takeUnicodeEscape(text) : std::nullopt;
        if (!codePoint) return std::nullopt;
        appendUtf8(content, *codePoint);
    }
    return std::nullopt;
}

}  // namespace zab
