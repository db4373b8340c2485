// What holds for every language file, whatever it contains.
#pragma once

#include <algorithm>
#include <string_view>

#include "media/parsers/must.h"
#include "settings/message_texts.h"

namespace zabtest {

inline constexpr std::uint32_t kTestLanguage = 0x407;

/// A file that hands out at most `pieceBytes` at a time.
inline zab::ReadBytes fileOf(std::string_view contents, std::size_t pieceBytes = SIZE_MAX) {
    return [contents, pieceBytes](char* into, std::size_t size) mutable {
        const std::size_t count = std::min({size, pieceBytes, contents.size()});
        contents.copy(into, count);
        contents.remove_prefix(count);
        return count;
    };
}

/// Some of those that a language file can replace, the first and the last of the table among them.
inline constexpr zab::TextId kSomeTexts[] = {zab::TextId::savingFlvTitle, zab::TextId::video,
                                             zab::TextId::audio, zab::TextId::quality};

inline void checkLanguageFile(std::string_view contents) {
    zab::MessageTexts whole, inPieces;
    const zab::MessageTexts builtIn;
    const bool used = zab::overlayLanguageFile(fileOf(contents), kTestLanguage, {}, whole);
    must(zab::overlayLanguageFile(fileOf(contents, 7), kTestLanguage, {}, inPieces) == used);
    for (const zab::TextId id : kSomeTexts) {
        must(whole[id].view() == inPieces[id].view());  // pieces never change what is read
        must(used || whole[id].view() == builtIn[id].view());
        must(whole[id].length() <= 8192);
    }
}

}  // namespace zabtest
