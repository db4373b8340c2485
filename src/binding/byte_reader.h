// A cursor over bytes from outside: it cannot leave its span, and a failed read moves nothing.
//
// A child reader is cut from its parent with take(), so what a nested record claims can never widen what it may
// read. Nothing is owned; the bytes must outlive the reader.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace zab {

using Bytes = std::span<const std::uint8_t>;

class ByteReader {
  public:
    constexpr ByteReader() noexcept = default;
    constexpr explicit ByteReader(Bytes bytes) noexcept : rest_(bytes) {}

    [[nodiscard]] constexpr std::size_t left() const noexcept { return rest_.size(); }
    [[nodiscard]] constexpr bool empty() const noexcept { return rest_.empty(); }
    [[nodiscard]] constexpr Bytes rest() const noexcept { return rest_; }

    /// The next `count` bytes, and behind them; nothing when fewer are left.
    constexpr std::optional<Bytes> take(std::uint64_t count) noexcept {
        if (count > rest_.size()) return std::nullopt;
        const Bytes taken = rest_.first(static_cast<std::size_t>(count));
        rest_ = rest_.subspan(static_cast<std::size_t>(count));
        return taken;
    }

    constexpr bool skip(std::uint64_t count) noexcept { return take(count).has_value(); }

    constexpr std::optional<std::uint8_t> u8() noexcept { return integer<std::uint8_t, 1, true>(); }
    constexpr std::optional<std::uint16_t> u16be() noexcept { return integer<std::uint16_t, 2, true>(); }
    constexpr std::optional<std::uint32_t> u24be() noexcept { return integer<std::uint32_t, 3, true>(); }
    constexpr std::optional<std::uint32_t> u32be() noexcept { return integer<std::uint32_t, 4, true>(); }
    constexpr std::optional<std::uint64_t> u64be() noexcept { return integer<std::uint64_t, 8, true>(); }
    constexpr std::optional<std::uint16_t> u16le() noexcept { return integer<std::uint16_t, 2, false>(); }

  private:
    template <class Int, std::size_t Size, bool BigEndian>
    constexpr std::optional<Int> integer() noexcept {
        const auto bytes = take(Size);
        if (!bytes) return std::nullopt;
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < Size; ++i) value = value << 8 | (*bytes)[BigEndian ? i : Size - 1 - i];
        return static_cast<Int>(value);
    }

    Bytes rest_;
};

}  // namespace zab
