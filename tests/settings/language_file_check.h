// What holds for every language file, whatever it contains.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "settings/message_texts.h"

namespace zab {

inline constexpr std::uint32_t kTestLanguage = 0x407;

/// A file that hands out at most `pieceBytes` at a time.
inline ReadBytes fileOf(std::string_view contents, std::size_t pieceBytes = SIZE_MAX) {
    return [contents, pieceBytes](char* into, std::size_t size) mutable {
        const std::size_t count = std::min({size, pieceBytes, contents.size()});
        contents.copy(into, count);
        contents.remove_prefix(count);
        return count;
    };
}

/// The IDs that a language file can replace.
inline const std::vector<TextId>& textIds() {
    static const std::vector<TextId> ids = [] {
        std::vector<TextId> found;
        MessageTexts texts;
        for (std::int32_t id = 20000; id < 22000; ++id)
            if (texts.replace(id, "")) found.push_back(static_cast<TextId>(id));
        return found;
    }();
    return ids;
}

inline void checkLanguageFile(std::string_view contents) {
    MessageTexts whole, inPieces;
    const bool used = overlayLanguageFile(fileOf(contents), kTestLanguage, {}, whole);
    EXPECT_EQ(overlayLanguageFile(fileOf(contents, 7), kTestLanguage, {}, inPieces), used);
    const MessageTexts builtIn;
    ASSERT_EQ(textIds().size(), kTextCount);
    for (const TextId text : textIds()) {
        EXPECT_EQ(whole[text].view(), inPieces[text].view()) << "pieces never change what is read";
        EXPECT_TRUE(used || whole[text].view() == builtIn[text].view())
            << "another language leaves all as it was";
        EXPECT_LE(whole[text].length(), 8192u);
    }
}

}  // namespace zab
