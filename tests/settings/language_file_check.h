// What holds for every language file, whatever it contains.
#pragma once

#include <algorithm>
#include <string_view>
#include <vector>

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

/// The IDs that a language file can replace.
inline const std::vector<zab::TextId>& textIds() {
    static const std::vector<zab::TextId> ids = [] {
        std::vector<zab::TextId> found;
        zab::MessageTexts texts;
        for (std::int32_t id = 20000; id < 22000; ++id)
            if (texts.replace(id, "")) found.push_back(static_cast<zab::TextId>(id));
        return found;
    }();
    return ids;
}

inline void checkLanguageFile(std::string_view contents) {
    zab::MessageTexts whole, inPieces;
    const zab::MessageTexts builtIn;
    const bool used = zab::overlayLanguageFile(fileOf(contents), kTestLanguage, {}, whole);
    must(zab::overlayLanguageFile(fileOf(contents, 7), kTestLanguage, {}, inPieces) == used);
    must(textIds().size() == zab::kTextCount);
    for (const zab::TextId id : textIds()) {
        must(whole[id].view() == inPieces[id].view());  // pieces never change what is read
        must(used || whole[id].view() == builtIn[id].view());
        must(whole[id].length() <= 8192);
    }
}

}  // namespace zabtest
