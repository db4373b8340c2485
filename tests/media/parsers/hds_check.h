// What holds for every body that the HDS parser may meet; shared by the property test and the fuzz target.
#pragma once

#include <string>
#include <string_view>

#include "binding/interface_ptr.h"
#include "media/parsers/hds.h"
#include "media/parsers/must.h"
#include "media/parsers/record.h"

namespace zabtest {

using F4MParserPtr = zab::InterfacePtr<zab::CF4MParser>;

/// By a parser that has read `before` already.
inline F4MParserPtr parsedHds(std::string_view body, std::string_view before = {}) {
    F4MParserPtr parser(new zab::CF4MParser);
    parser->parse(before);
    const bool isRead = parser->parse(body);
    must(isRead == !parser->media.empty());
    return parser;
}

/// Everything that a parse gives but its media.
inline std::string manifestOf(const F4MParserPtr& parser) {
    std::string all = record(parser->baseUrl, parser->duration, parser->hasDrm, parser->hasPv);
    for (const auto& b : parser->bootstraps) all += record(b.id, b.data);
    return all;
}

inline std::string mediaOf(const F4MParserPtr& parser) {
    std::string all;
    for (const auto& m : parser->media)
        all += record(m.url, m.bootstrapInfoId, m.bitrate, m.metadata, m.bootstrap, m.height, m.hidden);
    return all;
}

inline void checkHds(std::string_view body) {
    const F4MParserPtr parser = parsedHds(body);
    must(!parser->media.empty() || manifestOf(parser) == "||0|0;");  // what failed keeps nothing
    const F4MParserPtr again = parsedHds(
        body,
        "<manifest><drmAdditionalHeader/><pv-2.0/><baseURL>u</baseURL><duration>1</duration><bootstrapInfo>b"
        "</bootstrapInfo><media url='v' height='1'/><media url='w' height='1'/></manifest>");
    must(manifestOf(again) == manifestOf(parser) && mediaOf(again) == mediaOf(parser));
}

}  // namespace zabtest
