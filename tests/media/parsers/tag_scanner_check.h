// What holds for every text that the tag scanner may meet; shared by the property test and the fuzz target.
#pragma once

#include <string_view>

#include "media/parsers/must.h"
#include "media/parsers/tag_scanner.h"

namespace zabtest {

/// Attribute lists read at every place of the text, forwards and backwards, are what they are when read alone.
inline void checkTagScanner(std::string_view text) {
    constexpr std::string_view kNames[] = {"id", "a"};
    const zab::NextPlace quotes(text, '"');
    zab::TagAttributes forwards(text, kNames), backwards(text, kNames);
    const auto check = [&](zab::TagAttributes& attributes, std::size_t at) {
        const auto alone = zab::TagAttributes(text, kNames).readAt(at), values = attributes.readAt(at);
        must(values.end == alone.end && values.of == alone.of);
    };
    for (std::size_t at = 0; at <= text.size(); ++at) {
        must(quotes(at) == text.find('"', at));
        check(forwards, at);
        check(backwards, text.size() - at);
    }
}

}  // namespace zabtest
