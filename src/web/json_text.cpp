#include "web/json_text.h"

#include "binding/text.h"
#include "binding/utf.h"

namespace zab {
namespace {

constexpr std::size_t kDigits = 4;

/// The character of the escape that `text` goes on with, behind its "\\"; `text` loses what was read. False: it
/// is none.
bool appendEscaped(std::string& content, std::string_view& text) {
    constexpr std::string_view kEscapes = "\"\\/bfnrt", kMeanings = "\"\\/\b\f\n\r\t";
    if (text.empty()) return false;
    if (const auto known = kEscapes.find(text.front()); known != std::string_view::npos) {
        content += kMeanings[known];
        text.remove_prefix(1);
        return true;
    }
    const auto codePoint = text.front() == 'u' ? takeUnicodeEscape(text) : std::nullopt;
    if (codePoint) appendUtf8(content, *codePoint);
    return codePoint.has_value();
}

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
    if (!text.starts_with('"')) return std::nullopt;
    text.remove_prefix(1);
    std::string content;
    while (!text.empty()) {
        const char c = text.front();
        text.remove_prefix(1);
        if (c == '"') return content;
        if (c != '\\') {
            content += c;
        } else if (!appendEscaped(content, text)) {
            return std::nullopt;
        }
    }
    return std::nullopt;
}

std::string withoutJsonEscapes(std::string_view text) {
    std::string plain;
    plain.reserve(text.size());
    while (!text.empty()) {
        const std::string_view unescaped = upTo(text, '\\');
        plain += unescaped;
        text.remove_prefix(unescaped.size());
        if (text.empty()) break;
        text.remove_prefix(1);
        if (!appendEscaped(plain, text)) plain += '\\';
    }
    return plain;
}

}  // namespace zab
