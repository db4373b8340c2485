// Escape sequences replaced in one pass from left to right: what a replacement leaves is not looked at again.
#pragma once

#include <string>
#include <string_view>

namespace zab {

/// Linear in the text.
inline std::u16string replaceAll(std::u16string_view text, std::u16string_view what, char16_t by) {
    std::u16string result;
    result.reserve(text.size());
    for (auto at = text.find(what); at != text.npos; at = text.find(what)) {
        result += text.substr(0, at);
        result += by;
        text.remove_prefix(at + what.size());
    }
    return result += text;
}

}  // namespace zab
