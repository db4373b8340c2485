// Character references of HTML ("&amp;", "&#38;"): every name of the HTML standard and its rules for numbers.
//
// Bytes in, UTF-8 out. What is no reference stays as it stands. A name without its ";" counts where the
// standard lists it so; in an attribute's value not before "=", a letter or a digit, so that "?a=1&copy=2"
// stays an address.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zab {

enum class ReferencePlace : std::uint8_t { text, attribute };

/// Cost is linear in the text.
std::string decodeCharacterReferences(std::string_view text, ReferencePlace place);

}  // namespace zab
