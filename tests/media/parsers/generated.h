// Generated bodies: pieces of a format strung together at random, from a fixed seed.
#pragma once

#include <memory>
#include <random>
#include <span>
#include <string>
#include <string_view>

namespace zabtest {

/// `count` of the pieces, drawn at random.
inline std::string strungTogether(std::mt19937& random, std::span<const std::string_view> pieces, int count) {
    std::string body;
    for (int i = 0; i < count; ++i) body += pieces[random() % pieces.size()];
    return body;
}

/// Calls `check` with a block of exactly the text's size, so that a sanitizer sees the first byte too far.
template <class Check>
void onExactBlock(std::string_view text, Check check) {
    const auto block = std::make_unique<char[]>(text.size());
    text.copy(block.get(), text.size());
    check(std::string_view(block.get(), text.size()));
}

}  // namespace zabtest
