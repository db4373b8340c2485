// What tells one file from another, alike for the site and for who fetches from it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zab::site {

/// FNV-1a of 64 bits, as 16 hexadecimal digits.
inline std::string fingerprintOf(std::string_view bytes) {
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const char byte : bytes) hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001B3;
    std::string digits;
    for (int bit = 60; bit >= 0; bit -= 4) digits += "0123456789abcdef"[hash >> bit & 15];
    return digits;
}

}  // namespace zab::site
