// Replays the seeds and the old finds of every fuzz target, so that a target never rots and a find stays found.

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>

#include "fuzz/target.h"

namespace {

std::string contentsOf(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// Runs a check on a block of exactly the input's size, so that a sanitizer sees the first byte too far.
void replay(zabfuzz::Check check, const std::string& contents) {
    const auto block = std::make_unique<std::uint8_t[]>(contents.size());
    std::memcpy(block.get(), contents.data(), contents.size());
    check({block.get(), contents.size()});
}

TEST(FuzzReplay, EverySeedOfEveryTargetPasses) {
    for (const zabfuzz::Target* target = zabfuzz::targets(); target != nullptr; target = target->next) {
        SCOPED_TRACE(target->name);
        const std::filesystem::path seeds = std::filesystem::path(ZAB_FUZZ_SEEDS) / target->name;
        ASSERT_TRUE(std::filesystem::is_directory(seeds)) << "a target without seeds";
        target->check({});
        for (const auto& entry : std::filesystem::directory_iterator(seeds)) {
            SCOPED_TRACE(entry.path().filename().string());
            const std::string contents = contentsOf(entry.path());
            replay(target->check, contents);
            replay(target->check, contents.substr(0, contents.size() / 2));
        }
    }
}

}  // namespace
