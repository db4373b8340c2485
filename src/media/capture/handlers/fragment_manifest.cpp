// Fragment manifests (JSON): one stream in numbered fragments, whose addresses a template tells.
//
// The text is searched for its keys, not parsed.

#include <optional>

#include "binding/text.h"
#include "binding/utf.h"
#include "media/capture/handlers/handlers.h"
#include "web/url_resolve.h"

namespace zab {
namespace {

constexpr std::string_view kPlaceholder = "$fragment$";

/// What stands behind the first place of a key with its quotes that is followed by ":"; empty: none.
std::string_view valueOf(std::string_view text, std::string_view key) noexcept {
    for (auto at = text.find(key); at != std::string_view::npos; at = text.find(key)) {
        text = text.substr(at + key.size());
        const std::string_view rest = trimLeft(text);
        if (rest.starts_with(':')) return trimLeft(rest.substr(1));
    }
    return {};
}

std::optional<char32_t> hexUnit(std::string_view digits) noexcept {
    if (digits.size() < 4) return std::nullopt;
    char32_t unit = 0;
    for (const char c : digits.substr(0, 4)) {
        const int value = hexValue(c);
        if (value < 0) return std::nullopt;
        unit = unit << 4 | static_cast<char32_t>(value);
    }
    return unit;
}

/// The code point of "\uXXXX", or of two that are a surrogate pair; `text` begins behind the "u" and loses what
/// was read. A surrogate alone stays one.
std::optional<char32_t> takeUnicodeEscape(std::string_view& text) noexcept {
    const auto unit = hexUnit(text);
    if (!unit) return std::nullopt;
    text.remove_prefix(4);
    const bool isHigh = *unit >= 0xD800 && *unit < 0xDC00;
    if (!isHigh || !text.starts_with("\\u")) return unit;
    const auto low = hexUnit(text.substr(2));
    if (!low || *low < 0xDC00 || *low >= 0xE000) return unit;
    text.remove_prefix(6);
    return 0x10000 + ((*unit - 0xD800) << 10) + (*low - 0xDC00);
}

/// The content of the JSON string that `text` begins with; nothing when it is none.
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
        const char escape = text.front();
        text.remove_prefix(1);
        if (const auto known = kEscapes.find(escape); known != std::string_view::npos) {
            content += kMeanings[known];
            continue;
        }
        const auto codePoint = escape == 'u' ? takeUnicodeEscape(text) : std::nullopt;
        if (!codePoint) return std::nullopt;
        appendUtf8(content, *codePoint);
    }
    return std::nullopt;
}

std::string withFirstFragment(std::string_view text) {
    std::string filled;
    for (auto at = text.find(kPlaceholder); at != std::string_view::npos; at = text.find(kPlaceholder)) {
        filled.append(text.substr(0, at)) += '1';
        text.remove_prefix(at + kPlaceholder.size());
    }
    return filled.append(text);
}

}  // namespace

void offerFragmentManifest(std::string_view body, CaptureRun& run) {
    const std::string_view text = upToNul(body);
    const auto fragments = leadingDigits(valueOf(text, "\"fragments\""), INT32_MAX).value_or(0);
    const auto written = jsonString(valueOf(text, "\"template\""));
    if (fragments == 0 || !written) return;
    const std::string_view pattern = upToNul(*written);
    if (!contains(pattern, kPlaceholder)) return;

    const std::string resolved = resolveUrl(run.context().url, pattern);
    MediaEntry entry = run.plainEntry(withFirstFragment(resolved));
    entry.extra =
        "<fragments>" + std::to_string(fragments) + "</fragments><template>" + resolved + "</template>";
    entry.extension = "mp4";
    entry.kind = EntryKind::video;
    entry.duration = entryNumber(valueOf(text, "\"duration\""));
    entry.height = entryNumber(valueOf(text, "\"height\""));
    if (entry.height != 0) entry.description = std::to_string(entry.height) + 'p';
    run.offer(std::move(entry));
}

}  // namespace zab
