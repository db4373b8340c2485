// How the button library tells a controller what the user chose.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

namespace zab::testbed {

/// The payload of WM_COPYDATA 0x466: items of a tag (u8), the length of the value in bytes (u16), a byte
/// without meaning, and the value, UTF-16.
inline std::string choiceRecord(std::u16string_view link, std::uint64_t documentId,
                                std::u16string_view pageUrl) {
    std::string record;
    const auto add = [&](char tag, std::u16string_view text) {
        const std::size_t bytes = std::min<std::size_t>(text.size() * 2, 0xFFFE);
        record += {tag, static_cast<char>(bytes & 0xFF), static_cast<char>(bytes >> 8), '\0'};
        record.append(reinterpret_cast<const char*>(text.data()), bytes);
    };
    const std::string number = std::to_string(documentId);
    add(30, link);
    add(32, std::u16string(number.begin(), number.end()));
    add(31, pageUrl);
    return record;
}

}  // namespace zab::testbed
