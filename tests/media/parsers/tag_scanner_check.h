// What holds for every text that the tag scanner may meet; shared by the property test and the fuzz target.
#pragma once

#include <algorithm>
#include <string_view>

#include "binding/text.h"
#include "media/parsers/must.h"
#include "media/parsers/tag_scanner.h"

namespace zabtest {

inline bool isNameChar(char c, bool first) {
    return zab::isLetter(c) || c == '_' || (!first && (zab::isDigit(c) || c == '-' || c == ':'));
}

/// One attribute list, walked through step by step with no regard to cost: calls `take(name, value)` for each
/// and gives where the reading ended.
template <class Take>
std::size_t naiveAttributes(std::string_view text, std::size_t at, Take take) {
    const auto skip = [text](std::size_t from) {
        return std::min(text.find_first_not_of(" \t\r\n", from), text.size());
    };
    for (;;) {
        at = skip(at);
        std::size_t end = at;
        while (end < text.size() && isNameChar(text[end], end == at)) ++end;
        const std::size_t equals = skip(end);
        if (end == at || !text.substr(equals).starts_with('=')) return at;
        const std::size_t begin = skip(equals + 1);
        const bool quoted = begin < text.size() && (text[begin] == '"' || text[begin] == '\'');
        const std::size_t stop = quoted ? text.find(text[begin], begin + 1)
                                        : std::min(text.find_first_of(" \t\r\n/>", begin), text.size());
        if (stop == text.npos) return at;
        const std::size_t first = begin + (quoted ? 1 : 0);
        take(text.substr(at, end - at), text.substr(first, stop - first));
        at = stop + (quoted ? 1 : 0);
    }
}

/// Attribute lists read at every place of the text, forwards and backwards, agree with the naive reading.
inline void checkTagScanner(std::string_view text) {
    constexpr std::string_view kNames[] = {"id", "a"};
    const zab::NextPlace quotes(text, '"');
    zab::TagAttributes forwards(text, kNames), backwards(text, kNames);
    const auto check = [&](zab::TagAttributes& attributes, std::size_t at) {
        std::string_view expected[2];
        const std::size_t end = naiveAttributes(text, at, [&](std::string_view name, std::string_view value) {
            for (int i = 0; i < 2; ++i)
                if (name == kNames[i]) expected[i] = value;
        });
        const auto values = attributes.readAt(at);
        must(values.end == end && values.of[0] == expected[0] && values.of[1] == expected[1]);
    };
    for (std::size_t at = 0; at <= text.size(); ++at) {
        must(quotes(at) == text.find('"', at));
        check(forwards, at);
        check(backwards, text.size() - at);
    }
}

}  // namespace zabtest
