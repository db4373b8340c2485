// What holds for every body that an HLS parser may meet; shared by the property test and the fuzz target.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <string>
#include <string_view>

#include "media/parsers/hls.h"
#include "media/parsers/must.h"

namespace zabtest {

/// Everything that a parse gives, as text.
inline std::string hlsRecords(std::string_view body) {
    zab::CM3UParser parser;
    std::ostringstream all;
    all.precision(17);
    all << parser.parse(body) << parser.kind << parser.takeAllVariants << parser.hasNonTsSegments << '\n';
    for (const auto& v : parser.master.variants)
        all << v.uri << '|' << v.programId << '|' << v.bandwidth << '|' << v.codecs << '|' << v.resolution
            << '|' << v.audio << '|' << v.video << '|' << v.subtitles << '\n';
    for (const auto& r : parser.master.renditions)
        all << r.groupId << '|' << r.uri << '|' << r.type << '|' << r.language << '|' << r.name << '|'
            << r.isDefault << '|' << r.autoselect << '|' << r.forced << '|' << r.characteristics << '\n';
    for (const auto& s : parser.media.segments) all << s.title << '|' << s.uri << '|' << s.duration << '\n';
    all << parser.master.version << parser.media.targetDuration << '|' << parser.media.mediaSequence << '|'
        << parser.media.endList << '|' << parser.media.totalDuration << '\n';
    zab::CM3UParser::Stream stream;
    while (parser.getNextStream(stream))
        all << stream.uri << '|' << stream.audioUri << '|' << stream.height << '|' << stream.durationText << '|'
            << stream.bandwidth << '\n';
    return all.str();
}

inline std::string withCrBeforeLf(std::string_view body) {
    std::string result;
    for (const char c : body) result.append(c == '\n' ? "\r\n" : std::string(1, c));
    return result;
}

inline void checkHls(std::string_view body) {
    zab::CM3UParser parser;
    parser.parse(body);
    const auto tags = static_cast<std::size_t>(std::count(body.begin(), body.end(), '#'));
    must(parser.master.variants.size() + parser.master.renditions.size() + parser.media.segments.size() <=
         tags);
    double total = 0;
    std::size_t linked = 0;
    const zab::CM3UParser::MediaSegment* segment =
        parser.media.segments.empty() ? nullptr : &parser.media.segments[0];
    for (; segment != nullptr; segment = segment->next, ++linked) total += segment->duration;
    must(linked == parser.media.segments.size());
    must(total == parser.media.totalDuration || total != total);

    const std::string once = hlsRecords(body);
    must(hlsRecords(body) == once);
    must(hlsRecords(withCrBeforeLf(body)) == once);
}

}  // namespace zabtest
