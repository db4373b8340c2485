#include "binding/browser_text_win32.h"

#include <limits>

#include "binding/wide_win32.h"

namespace zab {
namespace {

/// Windows counts characters in an int.
template <class C>
bool fitsWindows(std::basic_string_view<C> text) {
    return text.size() <= static_cast<std::size_t>(std::numeric_limits<int>::max());
}

}  // namespace

std::optional<std::string> narrowFromUtf16(std::u16string_view text, std::uint32_t codePage) {
    if (!fitsWindows(text)) return std::nullopt;
    const auto convert = [&](char* buffer, int size) {
        return WideCharToMultiByte(codePage, 0, wide(text.data()), static_cast<int>(text.size()), buffer, size,
                                   nullptr, nullptr);
    };
    const int size = convert(nullptr, 0);
    if (size <= 0) return std::nullopt;
    std::string narrow(static_cast<std::size_t>(size), '\0');
    if (convert(narrow.data(), size) != size) return std::nullopt;
    return narrow;
}

std::optional<std::u16string> utf16FromNarrow(std::string_view text, std::uint32_t codePage) {
    if (!fitsWindows(text)) return std::nullopt;
    const auto convert = [&](char16_t* buffer, int size) {
        return MultiByteToWideChar(codePage, 0, text.data(), static_cast<int>(text.size()), wide(buffer), size);
    };
    const int size = convert(nullptr, 0);
    if (size <= 0) return std::nullopt;
    std::u16string converted(static_cast<std::size_t>(size), u'\0');
    if (convert(converted.data(), size) != size) return std::nullopt;
    return converted;
}

std::string ansiFromUtf16(std::u16string_view text) {
    return narrowFromUtf16(text, kAnsiCodePage).value_or(std::string{});
}

std::u16string utf16FromAnsi(std::string_view text) {
    return utf16FromNarrow(text, kAnsiCodePage).value_or(std::u16string{});
}

std::optional<std::string> narrowPreferringAnsi(std::u16string_view text) {
    auto ansi = narrowFromUtf16(text, kAnsiCodePage);
    if (ansi && utf16FromNarrow(*ansi, kAnsiCodePage) == text) return ansi;
    return narrowFromUtf16(text, kUtf8CodePage);
}

}  // namespace zab
