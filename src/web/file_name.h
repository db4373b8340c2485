// File names as HTTP headers carry them: which bytes of a header value are the name, and how a name that is
// UTF-8 is marked from here until the download manager has it (the prefix "utf-8''", as in RFC 5987 values).
//
// Narrow text, bytes as the server sent them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zab {

/// Whether every sequence is complete, judged by lead and continuation bytes alone (overlong forms and
/// surrogates pass).
bool isCompleteUtf8(std::string_view text) noexcept;

/// Stores the name that a Content-Disposition header gives: an encoded word (RFC 2047) decoded, where it can
/// be; a name in raw UTF-8 with the prefix; every other one as it stands. Any text is a name, the empty one
/// too.
void storeFileName(std::string_view name, std::string& fileName);

/// All that follows the "=" of the first "name" parameter of a Content-Type value (and the `blanks` behind the
/// "="), up to the value's end.
std::optional<std::string_view> nameParameterOf(std::string_view value, std::string_view blanks) noexcept;

/// The text between the quote that `value` begins with and the next one like it; nothing without that.
std::optional<std::string_view> quotedTextOf(std::string_view value) noexcept;

}  // namespace zab
