// What holds for every body that an HLS parser may meet; shared by the property test and the fuzz target.
#pragma once

#include <string>
#include <string_view>

#include "media/parsers/hls.h"
#include "media/parsers/must.h"
#include "media/parsers/record.h"

namespace zabtest {

/// Sets everything that a parse can set.
inline constexpr std::string_view kFullPlaylist =
    "#EXT-X-VERSION:3\n#EXT-X-MEDIA:GROUP-ID=g,URI=a\n#EXT-X-STREAM-INF:AUDIO=g\nv\n#EXT-X-TARGETDURATION:9\n"
    "#EXT-X-MEDIA-SEQUENCE:9\n#EXT-X-MAP:URI=x\n#EXTINF:9,t\ns\nEXT-X-ENDLIST\n#EXT-X-MEDIA:GROUP-ID=h\n";

inline std::string segmentsOf(const zab::CM3UParser& parser) {
    std::string all;
    for (const auto& s : parser.media.segments) all += record(s.title, s.uri, s.duration);
    return all;
}
inline std::string variantsOf(const zab::CM3UParser& parser) {
    std::string all;
    for (const auto& v : parser.master.variants)
        all += record(v.uri, v.programId, v.bandwidth, v.codecs, v.resolution, v.audio, v.video, v.subtitles);
    return all;
}
inline std::string renditionsOf(const zab::CM3UParser& parser) {
    std::string all;
    for (const auto& r : parser.master.renditions)
        all += record(r.groupId, r.uri, r.type, r.language, r.name, r.isDefault, r.autoselect, r.forced,
                      r.characteristics, r.subtitles);
    return all;
}
/// Target duration, sequence, versions, end mark and total duration.
inline std::string headOf(const zab::CM3UParser& parser) {
    const auto& media = parser.media;
    return record(media.targetDuration, media.mediaSequence, parser.master.version, media.version,
                  media.endList, media.totalDuration);
}
inline std::string streamsOf(zab::CM3UParser& parser) {
    std::string all;
    zab::CM3UParser::Stream s;
    while (parser.getNextStream(s)) all += record(s.uri, s.audioUri, s.height, s.durationText, s.bandwidth);
    must(s.uri.empty());  // the outputs are emptied at the end too
    return all;
}

/// Everything that a parse gives; `before`: by a parser that has read this already.
inline std::string hlsRecords(std::string_view body, std::string_view before = {}) {
    zab::CM3UParser parser;
    parser.parse(before);
    streamsOf(parser);
    const bool isPlaylist = parser.parse(body);
    return record(isPlaylist, parser.kind, parser.takeAllVariants, parser.hasNonTsSegments) +
           variantsOf(parser) + renditionsOf(parser) + segmentsOf(parser) + headOf(parser) + streamsOf(parser);
}

inline void checkHls(std::string_view body) {
    const std::string once = hlsRecords(body);
    must(hlsRecords(body, kFullPlaylist) == once);
    std::string withCr;
    for (const char c : body) withCr.append(c == '\n' ? "\r\n" : std::string(1, c));
    must(hlsRecords(withCr) == once);
}

}  // namespace zabtest
