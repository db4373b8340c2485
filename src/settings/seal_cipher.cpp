#include "settings/seal_cipher.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace zab {
namespace {

using Words5 = std::array<std::uint32_t, 5>;

/// The SHA-1 compression function (FIPS 180) with chaining value `chain`, for a block whose first word is
/// `first` and whose other words are 0. No padding.
Words5 compress(const Words5& chain, std::uint32_t first) noexcept {
    std::array<std::uint32_t, 80> w{first};
    for (std::size_t t = 16; t < w.size(); ++t)
        w[t] = std::rotl(w[t - 3] ^ w[t - 8] ^ w[t - 14] ^ w[t - 16], 1);
    auto [a, b, c, d, e] = chain;
    for (std::size_t t = 0; t < w.size(); ++t) {
        const auto [f, k] = t < 20   ? std::pair{(b & c) | (~b & d), 0x5A827999u}
                            : t < 40 ? std::pair{b ^ c ^ d, 0x6ED9EBA1u}
                            : t < 60 ? std::pair{(b & c) | (b & d) | (c & d), 0x8F1BBCDCu}
                                     : std::pair{b ^ c ^ d, 0xCA62C1D6u};
        const std::uint32_t next = std::rotl(a, 5) + f + e + w[t] + k;
        e = std::exchange(d, std::exchange(c, std::rotl(std::exchange(b, std::exchange(a, next)), 30)));
    }
    return {chain[0] + a, chain[1] + b, chain[2] + c, chain[3] + d, chain[4] + e};
}

/// G(first), G(first + 1), ...: word i mod 5 of the compression numbered i div 5.
void fillTable(const Words5& key, std::uint32_t first, std::span<std::uint32_t> table) noexcept {
    Words5 words{};
    for (std::uint32_t i = first; std::uint32_t & entry : table) {
        if (i == first || i % 5 == 0) words = compress(key, i / 5);
        entry = words[i++ % 5];
    }
}

constexpr std::uint32_t kIndexMask = 0x7FC;  // of a byte offset into the table of 512 words

}  // namespace

SealCipher::SealCipher(const Key& key) noexcept {
    fillTable(key, 0, rounds_);
    fillTable(key, 0x1000, masks_);
    fillTable(key, 0x2000, start_);
}

SealCipher::Block SealCipher::block(std::uint32_t index) const noexcept {
    const auto table = [this](std::uint32_t offset) { return rounds_[(offset & kIndexMask) / 4]; };
    const auto turn = [](std::uint32_t& word) { word = std::rotr(word, 9); };

    std::uint32_t a = index ^ start_[0];
    std::uint32_t b = std::rotr(index, 8) ^ start_[1];
    std::uint32_t c = std::rotr(index, 16) ^ start_[2];
    std::uint32_t d = std::rotr(index, 24) ^ start_[3];
    const auto mix = [&] {
        b += table(a), turn(a);
        c += table(b), turn(b);
        d += table(c), turn(c);
        a += table(d), turn(d);
    };
    mix();
    mix();
    const std::uint32_t n1 = d, n2 = b, n3 = a, n4 = c;
    mix();

    Block out;
    std::size_t at = 0;
    const auto write = [&](std::uint32_t word) {
        for (int shift = 24; shift >= 0; shift -= 8) out[at++] = static_cast<std::uint8_t>(word >> shift);
    };
    for (std::size_t i = 0; i < masks_.size() / 4; ++i) {
        std::uint32_t p = a & kIndexMask;
        b += table(p), turn(a), b ^= a;
        std::uint32_t q = b & kIndexMask;
        c ^= table(q), turn(b), c += b;
        p = (p + c) & kIndexMask;
        d += table(p), turn(c), d ^= c;
        q = (q + d) & kIndexMask;
        a ^= table(q), turn(d), a += d;
        p = (p + a) & kIndexMask;
        b ^= table(p), turn(a);
        q = (q + b) & kIndexMask;
        c += table(q), turn(b);
        p = (p + c) & kIndexMask;
        d ^= table(p), turn(c);
        q = (q + d) & kIndexMask;
        a += table(q), turn(d);

        write(b + masks_[4 * i]);
        write(c ^ masks_[4 * i + 1]);
        write(d + masks_[4 * i + 2]);
        write(a ^ masks_[4 * i + 3]);

        const bool even = i % 2 == 0;
        a += even ? n1 : n3;
        b += even ? n2 : n4;
        c ^= even ? n1 : n3;
        d ^= even ? n2 : n4;
    }
    return out;
}

void SealCipher::apply(std::span<std::uint8_t> bytes) const noexcept {
    for (std::uint32_t index = 0; !bytes.empty(); ++index) {
        const Block keystream = block(index);
        const std::size_t count = std::min(bytes.size(), keystream.size());
        for (std::size_t i = 0; i < count; ++i) bytes[i] ^= keystream[i];
        bytes = bytes.subspan(count);
    }
}

}  // namespace zab
