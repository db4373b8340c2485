// The commands of the media formats: hls, dash, hds, mp4.

#include <utility>

#include "binding/interface_ptr.h"
#include "media/parsers/dash.h"
#include "media/parsers/hds.h"
#include "media/parsers/hls.h"
#include "media/parsers/itags.h"
#include "media/parsers/mp4.h"
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

/// The itag of the first record that shows a picture without sound; null without one.
Json firstVideo(const zab::CYoutubeDashXMLParser& parser) {
    for (const auto& record : parser.representations)
        if (zab::isAdaptiveVideo(static_cast<std::uint32_t>(record.itag), 0) == 1) return record.itag;
    return nullptr;
}

Answer runDash(const Arguments& arguments) {
    zab::CYoutubeDashXMLParser parser;
    const bool recognised = parser.parse(arguments.bytes());
    const Json video = firstVideo(parser);
    const auto* audio = video.is_null() ? nullptr : parser.pickAudioFor(video.get<std::uint32_t>());
    return {recognised,
            {{"representations", arrayOf(parser.representations,
                                         [](const zab::DashRepresentation& record) -> Json {
                                             return {{"itag", record.itag},
                                                     {"baseUrl", asJson(record.baseUrl)},
                                                     {"segmentList", asJson(record.segmentList)}};
                                         })},
             {"video", video},
             {"audio", audio != nullptr ? Json(audio->itag) : Json()}}};
}

Json bootstrapJson(const zab::F4MBootstrap& bootstrap) {
    return {{"id", asJson(bootstrap.id)}, {"data", asJson(bootstrap.data)}};
}

Json mediaJson(const zab::F4MMedia& media) {
    return {{"url", asJson(media.url)},
            {"bootstrapInfoId", asJson(media.bootstrapInfoId)},
            {"bitrate", asJson(media.bitrate)},
            {"height", asJson(media.height)},
            {"metadata", asJson(media.metadata)},
            {"bootstrap", asJson(media.bootstrap)},
            {"hidden", media.hidden}};
}

Answer runHds(const Arguments& arguments) {
    const zab::InterfacePtr<zab::CF4MParser> parser(new zab::CF4MParser);
    const bool recognised = parser->parse(arguments.bytes());
    return {recognised,
            {{"baseUrl", asJson(parser->baseUrl)},
             {"duration", asJson(parser->duration)},
             {"hasDrm", parser->hasDrm},
             {"hasPv", parser->hasPv},
             {"bootstraps", arrayOf(parser->bootstraps, bootstrapJson)},
             {"media", arrayOf(parser->media, mediaJson)}}};
}

Answer runMp4(const Arguments& arguments) {
    const std::string bytes = arguments.bytes();
    zab::CMp4DashReader reader;
    const bool recognised = reader.read({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
    return {recognised,
            {{"timescale", reader.timescale},
             {"duration", reader.duration},
             {"fragmentDuration", reader.fragmentDuration},
             {"height", reader.height},
             {"seconds", reader.secondsText()}}};
}

constexpr Command kCommands[] = {
    {"hls", "An HLS playlist (M3U8)", kFileAlone, runHls},
    {"dash", "A DASH manifest (MPD) with segment lists", kFileAlone, runDash},
    {"hds", "An HDS manifest (F4M)", kFileAlone, runHds},
    {"mp4", "The first bytes of an MP4 or MOV file", kFileAlone, runMp4},
};

}  // namespace

std::span<const Command> formatCommands() { return kCommands; }

}  // namespace zabprobe
