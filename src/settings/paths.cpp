#include "settings/paths.h"

namespace zab {

std::string asciiOf(std::u16string_view text) {
    std::string result;
    result.reserve(text.size());
    for (const char16_t c : text) result += c < 0x80 ? static_cast<char>(c) : '?';
    return result;
}

}  // namespace zab
