#include "web/file_name.h"

#include <algorithm>
#include <cstdint>

#include "binding/text.h"
#include "web/encoding.h"

namespace zab {
namespace {

constexpr std::string_view kEncodedWord = "=?UTF-8?";
constexpr std::string_view kNameParameter = "name";

bool isAscii(char c) noexcept { return static_cast<std::uint8_t>(c) < 0x80; }

/// How many continuation bytes follow this lead byte; -1: none can begin here.
int continuationsBehind(std::uint8_t lead) noexcept {
    if (lead < 0x80) return 0;
    if ((lead & 0xE0) == 0xC0) return 1;
    if ((lead & 0xF0) == 0xE0) return 2;
    if ((lead & 0xF8) == 0xF0) return 3;
    return -1;
}

}  // namespace

bool isCompleteUtf8(std::string_view text) noexcept {
    int open = 0;
    for (const char c : text) {
        const auto byte = static_cast<std::uint8_t>(c);
        if (open > 0) {
            if ((byte & 0xC0) != 0x80) return false;
            --open;
        } else {
            open = continuationsBehind(byte);
            if (open < 0) return false;
        }
    }
    return open == 0;
}

void storeFileName(std::string_view name, std::string& fileName) {
    if (startsWithIgnoringCase(name, kEncodedWord)) {
        if (auto decoded = DecodeEncodedWordFileName(name)) fileName = std::move(*decoded);
        return;
    }
    const bool needsPrefix = !startsWithIgnoringCase(name, kUtf8NamePrefix) &&
                             !std::all_of(name.begin(), name.end(), isAscii) && isCompleteUtf8(name);
    fileName.assign(needsPrefix ? kUtf8NamePrefix : std::string_view{});
    fileName.append(name);
}

std::optional<std::string_view> nameParameterOf(std::string_view value, std::string_view blanks) noexcept {
    for (auto mark = value.find(';'); mark != std::string_view::npos; mark = value.find(';')) {
        value = trimLeft(value.substr(mark + 1), blanks);
        if (!startsWithIgnoringCase(value, kNameParameter)) continue;
        const std::string_view behind = trimLeft(value.substr(kNameParameter.size()), blanks);
        if (behind.starts_with('=')) return trimLeft(behind.substr(1), blanks);
    }
    return std::nullopt;
}

std::optional<std::string_view> quotedTextOf(std::string_view value) noexcept {
    const auto end = value.find(value.front(), 1);
    if (end == std::string_view::npos) return std::nullopt;
    return value.substr(1, end - 1);
}

}  // namespace zab
