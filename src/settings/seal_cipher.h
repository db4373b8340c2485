// SEAL 3.0 (Rogaway and Coppersmith, "A Software-Optimized Encryption Algorithm", 1997): a keystream from a key
// of 160 bits. Blocks of 1,024 bytes, words written big-endian; block number n is the keystream of index n.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace zab {

class SealCipher {
  public:
    static constexpr std::size_t kBlockBytes = 1024;
    using Key = std::array<std::uint32_t, 5>;
    using Block = std::array<std::uint8_t, kBlockBytes>;

    explicit SealCipher(const Key& key) noexcept;

    [[nodiscard]] Block block(std::uint32_t index) const noexcept;

    /// Enciphers or deciphers in place: byte i with byte i of the keystream from index 0 on.
    void apply(std::span<std::uint8_t> bytes) const noexcept;

  private:
    std::array<std::uint32_t, 512> rounds_;
    std::array<std::uint32_t, 256> masks_;
    std::array<std::uint32_t, 4> start_;
};

}  // namespace zab
