#include "settings/seal_cipher.h"

#include <gtest/gtest.h>

#include <string>

#include "settings/data_file.h"

namespace zab {
namespace {

std::string hexOf(auto bytes) {
    std::string text;
    for (const auto byte : bytes) {
        text += "0123456789abcdef"[byte >> 4 & 15];
        text += "0123456789abcdef"[byte & 15];
    }
    return text;
}

std::string keystream(std::size_t bytes) {
    const std::string zeros(bytes, '\0');
    return applyDataFileCipher({reinterpret_cast<const std::uint8_t*>(zeros.data()), zeros.size()});
}

TEST(SealCipher, GivesThePublishedBlock) {
    constexpr SealCipher::Key kSha1Start{0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476, 0xC3D2E1F0};
    const auto block = SealCipher(kSha1Start).block(0x013577AF);
    EXPECT_EQ(hexOf(std::span(block).first(32)),
              "37a005959b84c49ca4be1e050673530f5fb097fdf6a13fbd6c2cdecd81fdee7c");
    // The last words, so that all 64 steps count: of the block whose SHA-256 begins ad966834.
    EXPECT_EQ(hexOf(std::span(block).last(16)), "ab5805ee9877e495881035fbb7342c24");
}

TEST(SealCipher, TakesANewBlockEvery1024Bytes) {
    const std::string stream = keystream(1024 + 32);
    EXPECT_EQ(hexOf(stream.substr(0, 32)), "2bb326dbaabe700788e7255230c8db3fb00d42085badf52d95880abdda0d92d9");
    EXPECT_EQ(hexOf(stream.substr(1024)), "5beadfc2bf771b611cc80cb043bcdca170266821065e7ce3564f9bf57f6d39ba");
    EXPECT_EQ(keystream(1023), stream.substr(0, 1023)) << "a last block that is not full";
}

}  // namespace
}  // namespace zab
