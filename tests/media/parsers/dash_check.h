// What holds for every body that the DASH parser may meet; shared by the property test and the fuzz target.
#pragma once

#include <string>
#include <string_view>

#include "media/parsers/dash.h"
#include "media/parsers/must.h"
#include "media/parsers/record.h"

namespace zabtest {

/// "itag|baseUrl|segmentList;" of each record; `before`: by a parser that has read this already.
inline std::string dashRecords(std::string_view body, std::string_view before = {}) {
    zab::CYoutubeDashXMLParser parser;
    parser.parse(before);
    const bool recognised = parser.parse(body);
    must(recognised == !parser.representations.empty());
    std::string all;
    for (const auto& r : parser.representations) all += record(r.itag, r.baseUrl, r.segmentList);
    return all;
}

inline void checkDash(std::string_view body) {
    must(dashRecords(body) ==
         dashRecords(body, "<Representation id=1><BaseURL>b</BaseURL><SegmentList>s</SegmentList>"));
}

}  // namespace zabtest
