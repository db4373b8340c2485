// Boxes of the ISO base media file format (ISO/IEC 14496-12): a big-endian size that counts its header, a type
// of four characters, a payload. Places are offsets into one buffer, and no read leaves it.
#pragma once

#include <cstdint>
#include <optional>

#include "binding/byte_reader.h"

namespace zab {

/// The number of a type, as it is read from the file.
constexpr std::uint32_t boxType(const char (&name)[5]) noexcept {
    std::uint32_t type = 0;
    for (int i = 0; i < 4; ++i) type = type << 8 | static_cast<std::uint8_t>(name[i]);
    return type;
}

struct Box {
    std::uint32_t type = 0;
    std::size_t payload = 0;  // where it begins
    std::uint64_t size = 0;   // of the payload, as the header claims it

    [[nodiscard]] bool is(const char (&name)[5]) const noexcept { return type == boxType(name); }
};

/// Bytes of `buffer` from `from` on; empty behind its end.
constexpr ByteReader readerAt(Bytes buffer, std::uint64_t from) noexcept {
    return ByteReader(from < buffer.size() ? buffer.subspan(static_cast<std::size_t>(from)) : Bytes{});
}

/// The top-level box whose header begins at `from`. Size 1: a 64-bit size follows the type. Size 0: up to the
/// end of the buffer. Nothing when the header does not lie in the buffer or claims less than itself.
constexpr std::optional<Box> topLevelBoxAt(Bytes buffer, std::uint64_t from) noexcept {
    constexpr std::uint64_t kHeader = 8, kLongHeader = 16;
    ByteReader reader = readerAt(buffer, from);
    const std::uint64_t left = reader.left();
    const auto size = reader.u32be();
    const auto type = reader.u32be();
    if (!size || !type) return std::nullopt;
    const bool isLong = *size == 1;
    const std::uint64_t header = isLong ? kLongHeader : kHeader;
    const auto claimed = isLong ? reader.u64be() : *size == 0 ? left : std::optional<std::uint64_t>(*size);
    if (!claimed || *claimed < header) return std::nullopt;
    return Box{*type, static_cast<std::size_t>(from + header), *claimed - header};
}

/// Walks the children of a box: 32-bit sizes only, and only children that lie in it whole.
class BoxChildren {
  public:
    /// `parent`'s payload lies in `buffer` whole.
    constexpr BoxChildren(Bytes buffer, const Box& parent) noexcept
        : rest_(buffer.subspan(parent.payload, static_cast<std::size_t>(parent.size))), at_(parent.payload) {}

    /// False at the end, at a size below 8, and at a child that claims more than is left.
    constexpr bool next(Box& child) noexcept {
        constexpr std::uint32_t kHeader = 8;
        const auto size = rest_.u32be();
        const auto type = rest_.u32be();
        if (!size || !type || *size < kHeader || !rest_.skip(*size - kHeader)) return false;
        child = {*type, at_ + kHeader, *size - kHeader};
        at_ += *size;
        return true;
    }

  private:
    ByteReader rest_;
    std::size_t at_;
};

}  // namespace zab
