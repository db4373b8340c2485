// Replays the seeds and the old finds of every fuzz target, so that a target never rots and a find stays found,
// and tries every target on bodies that chance makes of its seeds and its dictionary.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "fuzz/targets.h"
#include "media/parsers/generated.h"

namespace {

namespace fs = std::filesystem;

std::string contentsOf(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// Each line's text in quotes; in it "\xNN" is a byte, and "\" stands before itself and a quote.
std::vector<std::string> entriesOf(const fs::path& dictionary) {
    std::vector<std::string> entries;
    std::ifstream stream(dictionary);
    for (std::string line; std::getline(stream, line);) {
        std::string entry = line.substr(1, line.rfind('"') - 1);
        for (auto at = entry.find('\\'); at != entry.npos; at = entry.find('\\', at + 1)) {
            const bool isByte = entry[at + 1] == 'x';
            const char meant =
                isByte ? static_cast<char>(std::stoi(entry.substr(at + 2, 2), nullptr, 16)) : entry[at + 1];
            entry.replace(at, isByte ? 4 : 2, 1, meant);
        }
        entries.push_back(std::move(entry));
    }
    return entries;
}

/// A seed with bytes of its own at three wrong places, or a string of the dictionary's entries.
std::string bodyOfChance(std::mt19937& random, const std::vector<std::string>& seeds,
                         const std::vector<std::string>& entries) {
    std::string body;
    if (!entries.empty() && random() % 2 == 0) {
        for (auto count = random() % 60; count > 0; --count) body += entries[random() % entries.size()];
    } else {
        body = seeds[random() % seeds.size()];
        for (int i = 0; i < 3 && !body.empty(); ++i)
            body[random() % body.size()] = body[random() % body.size()];
    }
    return body;
}

TEST(FuzzReplay, EverySeedOfEveryTargetPassesAndWhatChanceMakesOfThem) {
    std::size_t folders = 0;
    for (const zabfuzz::Target& target : zabfuzz::targets()) {
        const fs::path folder = fs::path(ZAB_FUZZ_SEEDS) / target.name;
        ASSERT_TRUE(fs::is_directory(folder)) << "no seeds for " << target.name;
        ++folders;
        zabtest::onExactBlock("", target.check);
        std::vector<std::string> seeds;
        for (const auto& entry : fs::directory_iterator(folder)) {
            SCOPED_TRACE(entry.path().string());
            const std::string& contents = seeds.emplace_back(contentsOf(entry.path()));
            zabtest::onExactBlock(contents, target.check);
            zabtest::onExactBlock(contents.substr(0, contents.size() / 2), target.check);
        }
        std::ranges::sort(seeds);  // a folder has no order
        const auto entries =
            entriesOf(folder.parent_path().parent_path() / (std::string(target.name) + ".dict"));
        zabtest::Random random(20);
        // A day of the stand-in browser takes as long as a hundred bodies.
        for (int round = target.name == "any_order" ? 0 : 400; round > 0; --round) {
            const std::string body = bodyOfChance(random, seeds, entries);
            zabtest::onExactBlock(body, target.check);
            zabtest::onExactBlock(body.substr(0, random() % (body.size() + 1)), target.check);
        }
    }
    EXPECT_EQ(folders, std::distance(fs::directory_iterator(ZAB_FUZZ_SEEDS), {})) << "seeds without a target";
}

}  // namespace
