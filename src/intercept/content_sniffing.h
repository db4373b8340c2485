// What the first bytes of a body say about its type, by the system's own sniffer.
#pragma once

#include <cstdint>

#include "binding/my_str.h"

namespace zab {

/// Looks at no more than the first 256 bytes. True, with the class code of the type (empty when the type has
/// none), when they reveal a specific type; else `classCode` stays as it was. A sniffer that is missing is
/// looked for again at the next call. Main thread only.
bool SniffContentType(const std::uint8_t* data, std::uint32_t length, MyStrClass& classCode) noexcept;

}  // namespace zab
