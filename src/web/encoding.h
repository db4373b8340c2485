// Text encodings of HTTP: Base64 (RFC 4648, standard alphabet), Basic credentials (RFC 7617), and the encoded
// word of RFC 2047 as far as file names use it.
//
// Bytes in, bytes out; the character set of what is decoded is the caller's matter. Time is linear in the
// input.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zab {

/// Marks a file name whose bytes are UTF-8, from its header until the download manager has it.
inline constexpr std::string_view kUtf8NamePrefix = "utf-8''";

/// With "=" padding and without line breaks.
std::string Base64Encode(std::string_view bytes);

/// Skips leading spaces and tabs, then reads up to the first byte outside the alphabet: the padding, the end,
/// or anything else. A last group of two or three characters gives one or two bytes; of one character, none.
std::string Base64Decode(std::string_view text);

struct BasicCredentials {
    std::string user;
    std::string password;
};

/// The credentials of an Authorization header's value; nothing for another scheme or without a colon. Both
/// parts end, like all copied text, at a NUL.
std::optional<BasicCredentials> ParseBasicCredentials(std::string_view headerValue);

/// `text` begins with "=?UTF-8?" in any letter case; the caller has tested it. Gives kUtf8NamePrefix and the
/// decoded bytes; nothing for another encoding than "B" or when the word is not closed.
std::optional<std::string> DecodeEncodedWordFileName(std::string_view text);

}  // namespace zab
