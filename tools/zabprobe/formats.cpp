// The commands of the media formats: hls.

#include "media/parsers/hls.h"
#include "zabprobe/command.h"
#include "zabprobe/text_json.h"

namespace zabprobe {
namespace {

Json variantJson(const zab::CM3UParser::MPLVariant& variant) {
    return {{"uri", asJson(variant.uri)},
            {"programId", variant.programId},
            {"bandwidth", asJson(variant.bandwidth)},
            {"codecs", asJson(variant.codecs)},
            {"resolution", asJson(variant.resolution)},
            {"audio", asJson(variant.audio)},
            {"video", asJson(variant.video)},
            {"subtitles", asJson(variant.subtitles)}};
}

Json renditionJson(const zab::MediaRendition& rendition) {
    return {{"groupId", asJson(rendition.groupId)},
            {"uri", asJson(rendition.uri)},
            {"type", asJson(rendition.type)},
            {"language", asJson(rendition.language)},
            {"name", asJson(rendition.name)},
            {"isDefault", rendition.isDefault},
            {"autoselect", asJson(rendition.autoselect)},
            {"forced", asJson(rendition.forced)},
            {"characteristics", asJson(rendition.characteristics)},
            {"subtitles", asJson(rendition.subtitles)}};
}

Json segmentJson(const zab::CM3UParser::MediaSegment& segment) {
    return {{"uri", asJson(segment.uri)}, {"title", asJson(segment.title)}, {"duration", segment.duration}};
}

Json streamJson(const zab::CM3UParser::Stream& stream) {
    return {{"uri", asJson(stream.uri)},
            {"audioUri", asJson(stream.audioUri)},
            {"height", asJson(stream.height)},
            {"durationText", asJson(stream.durationText)},
            {"bandwidth", asJson(stream.bandwidth)}};
}

/// The array of `toJson` over all records.
template <class List, class ToJson>
Json arrayOf(const List& records, ToJson toJson) {
    Json array = Json::array();
    for (const auto& record : records) array.push_back(toJson(record));
    return array;
}

Answer runHls(const Arguments& arguments) {
    zab::CM3UParser parser;
    const bool recognised = parser.parse(arguments.bytes());
    Json streams = Json::array();
    zab::CM3UParser::Stream stream;
    while (parser.getNextStream(stream)) streams.push_back(streamJson(stream));
    return {recognised,
            {{"kind", parser.kind},
             {"takeAllVariants", parser.takeAllVariants},
             {"hasNonTsSegments", parser.hasNonTsSegments},
             {"master",
              {{"version", parser.master.version},
               {"variants", arrayOf(parser.master.variants, variantJson)},
               {"renditions", arrayOf(parser.master.renditions, renditionJson)}}},
             {"media",
              {{"version", parser.media.version},
               {"targetDuration", parser.media.targetDuration},
               {"mediaSequence", parser.media.mediaSequence},
               {"endList", parser.media.endList ? 1 : 0},
               {"totalDuration", parser.media.totalDuration},
               {"segments", arrayOf(parser.media.segments, segmentJson)}}},
             {"streams", std::move(streams)}}};
}

constexpr Command kCommands[] = {
    {"hls", "An HLS playlist (M3U8)", takesFile, runHls},
};

}  // namespace

std::span<const Command> formatCommands() { return kCommands; }

}  // namespace zabprobe
