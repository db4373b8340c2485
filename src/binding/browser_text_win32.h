// Text between UTF-16 and the code pages of Windows, and the rule by which wide browser text becomes narrow.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zab {

inline constexpr std::uint32_t kAnsiCodePage = 0;
inline constexpr std::uint32_t kUtf8CodePage = 65001;

/// Nothing for empty text and for text that Windows cannot convert. A character that the code page lacks
/// becomes the nearest one that it has, or "?".
std::optional<std::string> narrowFromUtf16(std::u16string_view text, std::uint32_t codePage);
std::optional<std::u16string> utf16FromNarrow(std::string_view text, std::uint32_t codePage);

/// The same in the ANSI code page; what cannot be converted is empty.
std::string ansiFromUtf16(std::u16string_view text);
std::u16string utf16FromAnsi(std::string_view text);

/// ANSI when that gives back the same text, UTF-8 otherwise; nothing for empty text.
std::optional<std::string> narrowPreferringAnsi(std::u16string_view text);

}  // namespace zab
