// Generated bodies: pieces of a format strung together at random, from a seed that a failure names.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "binding/pieces.h"
#include "media/parsers/must.h"

namespace zabtest {

class Random : public std::mt19937 {
  public:
    explicit Random(unsigned seed, const char* file = __builtin_FILE(), int line = __builtin_LINE())
        : std::mt19937(seed), trace_(file, line, "seed " + std::to_string(seed)) {}

  private:
    testing::ScopedTrace trace_;
};

/// The pieces of a text that "~" divides.
inline std::vector<std::string_view> pieces(std::string_view joined) {
    std::vector<std::string_view> all;
    for (const std::string_view piece : zab::piecesOf(joined, '~')) all.push_back(piece);
    return all;
}

/// `count` of the pieces, drawn at random.
inline std::string strungTogether(std::mt19937& random, std::span<const std::string_view> pieces,
                                  std::size_t count) {
    std::string body;
    for (std::size_t i = 0; i < count; ++i) body += pieces[random() % pieces.size()];
    return body;
}

/// Calls `check` with a block of exactly the text's size, so that a sanitizer sees the first byte too far. A
/// claim that does not hold is a failure with the text.
template <class Check>
void onExactBlock(std::string_view text, Check check) {
    const auto block = std::make_unique<char[]>(text.size());
    text.copy(block.get(), text.size());
    try {
        check(std::string_view(block.get(), text.size()));
    } catch (const ClaimFailed& failed) {
        ADD_FAILURE() << failed.what() << " for " << testing::PrintToString(text);
    }
}

/// The check holds for `rounds` generated bodies, and for prefixes of them.
inline void checkGenerated(Random&& random, int rounds, std::span<const std::string_view> pieces,
                           void (*check)(std::string_view)) {
    for (int round = 0; round < rounds; ++round) {
        const std::string body = strungTogether(random, pieces, 4 + random() % 60);
        onExactBlock(body, check);
        for (int prefix = 0; prefix < 2; ++prefix)
            onExactBlock(body.substr(0, random() % (body.size() + 1)), check);
    }
}

}  // namespace zabtest
