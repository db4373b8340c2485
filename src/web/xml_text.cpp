#include "web/xml_text.h"

#include <optional>

#include "binding/text.h"
#include "binding/utf.h"

namespace zab {
namespace {

struct Entity {
    std::string_view name;
    char meaning;
};
constexpr Entity kEntities[] = {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};
constexpr std::size_t kLongestReference = 10;  // "#x0010FFFF"

/// `digits` whole, of this base; nothing when it is no number of a character.
std::optional<char32_t> numberOf(std::string_view digits, int base) noexcept {
    char32_t value = 0;
    for (const char c : digits) {
        const int digit = hexValue(c);
        if (digit < 0 || digit >= base) return std::nullopt;
        value = value * static_cast<char32_t>(base) + static_cast<char32_t>(digit);
        if (value > 0x10FFFF) return std::nullopt;
    }
    return value == 0 ? std::nullopt : std::optional(value);
}

/// What a reference means; `name` stands between "&" and ";".
std::optional<char32_t> meaningOf(std::string_view name) noexcept {
    if (name.starts_with("#x")) return numberOf(name.substr(2), 16);
    if (name.starts_with('#')) return numberOf(name.substr(1), 10);
    for (const Entity& entity : kEntities)
        if (entity.name == name) return static_cast<char32_t>(entity.meaning);
    return std::nullopt;
}

}  // namespace

std::string addressInXml(std::string_view written) {
    std::string_view text = trim(written);
    std::string address;
    address.reserve(text.size());
    while (!text.empty()) {
        const std::string_view plain = upTo(text, '&');
        address += plain;
        text.remove_prefix(plain.size());
        const std::string_view name = upTo(text.substr(0, kLongestReference + 1), ';');
        const bool isEnded = name.size() < text.size() && text[name.size()] == ';';
        const auto meaning = isEnded ? meaningOf(name.substr(1)) : std::nullopt;
        if (meaning) {
            appendUtf8(address, *meaning);
            text.remove_prefix(name.size() + 1);
        } else if (!text.empty()) {
            address += '&';
            text.remove_prefix(1);
        }
    }
    return address;
}

}  // namespace zab
