// Narrow text from outside as JSON: each byte of an ill-formed UTF-8 sequence becomes U+FFFD.
#pragma once

#include <string>
#include <string_view>

#include "binding/utf.h"

namespace zabprobe {

inline std::string asJson(std::string_view text) { return zab::wellFormedUtf8(text); }

}  // namespace zabprobe
