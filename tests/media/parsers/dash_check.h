// What holds for every body that the DASH parser may meet; shared by the property test and the fuzz target.
#pragma once

#include <string>
#include <string_view>

#include "media/parsers/dash.h"
#include "media/parsers/must.h"
#include "media/parsers/naive_tags.h"

namespace zabtest {

/// "itag|baseUrl|segmentList;" of each record.
inline std::string dashRecords(std::string_view body) {
    zab::CYoutubeDashXMLParser parser;
    const bool recognised = parser.parse(body);
    must(recognised == !parser.representations.empty());
    std::string all;
    for (const auto& r : parser.representations)
        all +=
            std::to_string(r.itag).append("|").append(r.baseUrl).append("|").append(r.segmentList).append(";");
    return all;
}

inline std::string naiveDashRecords(std::string_view body) {
    const NaiveTags tags(zab::upToNul(body));
    std::string all;
    for (auto at = tags.nextTag(0); at != NaiveTags::kNone;) {
        const std::size_t behindName = tags.behindStart(at, "Representation");
        if (behindName == NaiveTags::kNone) {
            at = tags.nextTag(at + 1);
            continue;
        }
        std::string_view id, baseUrl, segmentList;
        auto child =
            tags.nextTag(tags.attributes(behindName, [&id](std::string_view name, std::string_view value) {
                if (name == "id") id = value;
            }));
        for (; child != NaiveTags::kNone && !tags.isEnd(child, "Representation");
             child = tags.nextTag(child + 1)) {
            const std::size_t behindUrl = tags.behindStart(child, "BaseURL");
            if (behindUrl != NaiveTags::kNone) tags.content(behindUrl, "BaseURL", baseUrl);
            const std::size_t behindList = tags.behindStart(child, "SegmentList");
            if (behindList != NaiveTags::kNone) tags.content(behindList, "SegmentList", segmentList);
        }
        const auto itag = zab::leadingDigits(id, INT32_MAX).value_or(0);
        if (itag != 0 && !baseUrl.empty() && !segmentList.empty())
            all += std::to_string(itag).append("|").append(baseUrl).append("|").append(segmentList).append(";");
        at = behindName + 14 <= tags.text().size() ? tags.nextTag(behindName + 14) : NaiveTags::kNone;
    }
    return all;
}

inline void checkDash(std::string_view body) { must(dashRecords(body) == naiveDashRecords(body)); }

}  // namespace zabtest
