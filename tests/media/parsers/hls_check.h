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

/// Sets everything that a parse can set.
inline constexpr std::string_view kFullPlaylist =
    "#EXT-X-VERSION:3\n#EXT-X-MEDIA:GROUP-ID=g,URI=a\n#EXT-X-STREAM-INF:AUDIO=g\nv\n#EXT-X-TARGETDURATION:9\n"
    "#EXT-X-MEDIA-SEQUENCE:9\n#EXT-X-MAP:URI=x\n#EXTINF:9,t\ns\nEXT-X-ENDLIST\n#EXT-X-MEDIA:GROUP-ID=h\n";

/// Everything that a parse gives, as text; `before`: by a parser that has read this already.
inline std::string hlsRecords(std::string_view body, std::string_view before = {}) {
    zab::CM3UParser parser;
    zab::CM3UParser::Stream stream;
    parser.parse(before);
    while (parser.getNextStream(stream)) continue;
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
    all << parser.master.version << parser.media.version << parser.media.targetDuration << '|'
        << parser.media.mediaSequence << '|' << parser.media.endList << '|' << parser.media.totalDuration
        << '\n';
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
    must(hlsRecords(body, kFullPlaylist) == once);
    must(hlsRecords(withCrBeforeLf(body)) == once);
}

}  // namespace zabtest
