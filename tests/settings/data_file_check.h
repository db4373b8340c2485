// What holds for every data file, whatever it contains.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "settings/data_file.h"

namespace zab {

inline void checkDataFile(Bytes plain) {
    const std::string contents(plain.begin(), plain.end());
    const std::string enciphered = applyDataFileCipher(plain);
    EXPECT_EQ(
        applyDataFileCipher({reinterpret_cast<const std::uint8_t*>(enciphered.data()), enciphered.size()}),
        contents)
        << "what is enciphered can be deciphered";

    const auto record = parseDataFile(contents);
    EXPECT_EQ(record->loaded, 1u);
    EXPECT_EQ(record->contents, contents);
    EXPECT_LE(record->youtubePairing, 2u);
    const auto lines = static_cast<std::size_t>(std::count(contents.begin(), contents.end(), '\n')) + 1;
    EXPECT_LE(record->listenSkip.size() + record->hlsAsIs.size(), lines) << "at most one entry a line";
    for (const auto* patterns : {&record->listenSkip, &record->hlsAsIs}) {
        for (const std::string& pattern : *patterns) {
            EXPECT_FALSE(pattern.empty());
            EXPECT_LE(pattern.size(), 4096u);
            EXPECT_NE(contents.find(pattern), std::string::npos);
        }
    }
    const bool all = std::any_of(record->listenSkip.begin(), record->listenSkip.end(),
                                 [](const std::string& pattern) { return pattern == "*"; });
    EXPECT_TRUE(!all || record->skipsListening("www.example.com"));
}

}  // namespace zab
