// Bodies that chance makes, from a seed that a failure names.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <string_view>

#include "media/parsers/must.h"

namespace zabtest {

class Random : public std::mt19937 {
  public:
    explicit Random(unsigned seed, const char* file = __builtin_FILE(), int line = __builtin_LINE())
        : std::mt19937(seed), trace_(file, line, "seed " + std::to_string(seed)) {}

  private:
    testing::ScopedTrace trace_;
};

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

}  // namespace zabtest
