// Replays the seeds and the old finds of every fuzz target, so that a target never rots and a find stays found.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "fuzz/targets.h"
#include "media/parsers/generated.h"

namespace {

namespace fs = std::filesystem;

std::string contentsOf(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

TEST(FuzzReplay, EverySeedOfEveryTargetPasses) {
    std::size_t folders = 0;
    for (const zabfuzz::Target& target : zabfuzz::targets()) {
        const fs::path seeds = fs::path(ZAB_FUZZ_SEEDS) / target.name;
        ASSERT_TRUE(fs::is_directory(seeds)) << "no seeds for " << target.name;
        ++folders;
        zabtest::onExactBlock("", target.check);
        for (const auto& entry : fs::directory_iterator(seeds)) {
            SCOPED_TRACE(entry.path().string());
            const std::string contents = contentsOf(entry.path());
            zabtest::onExactBlock(contents, target.check);
            zabtest::onExactBlock(contents.substr(0, contents.size() / 2), target.check);
        }
    }
    EXPECT_EQ(folders, std::distance(fs::directory_iterator(ZAB_FUZZ_SEEDS), {})) << "seeds without a target";
}

}  // namespace
