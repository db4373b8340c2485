// Strings of JSON (RFC 8259 section 7) as they are read out of pages and manifests, and the "\uXXXX" that
// scripts write too.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zab {

/// The code point of "uXXXX", or of "uXXXX\uXXXX" that is a surrogate pair; `text` begins with that "u", behind
/// its "\", and loses what was read. A surrogate alone stays one. Nothing: four hexadecimal digits are not
/// there.
std::optional<char32_t> takeUnicodeEscape(std::string_view& text) noexcept;

/// The content of the JSON string that `text` begins with, quote included, in UTF-8; nothing when it is none.
std::optional<std::string> jsonString(std::string_view text);

/// `text`, a part of such a string, with its escapes undone. What is no escape stays as it stands.
std::string withoutJsonEscapes(std::string_view text);

}  // namespace zab
