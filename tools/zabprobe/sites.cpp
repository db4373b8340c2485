// Commands about single sites: YouTube's catalogue and itags, Facebook, Vimeo.

#include <cstdint>

#include "binding/utf.h"
#include "media/parsers/facebook.h"
#include "media/parsers/itags.h"
#include "media/parsers/stream_urls.h"
#include "media/parsers/vimeo.h"
#include "media/parsers/youtube_parser.h"
#include "zabprobe/command.h"

namespace zabprobe {
namespace {

Answer runYoutube(const Arguments& arguments) {
    const std::u16string text = zab::utf16FromUtf8(arguments.bytes());
    zab::CYoutubeParser parser;
    const auto count = arguments.videoInfo ? parser.parseVideoInfo(text) : parser.parsePage(text);
    Json entries = Json::array();
    for (const auto& entry : parser.entries()) {
        entries.push_back({{"url", zab::utf8FromUtf16(entry.url)},
                           {"itag", entry.itag},
                           {"adaptive", entry.adaptive},
                           {"hasProgressiveTwin", entry.hasProgressiveTwin}});
    }
    return {count > 0, {{"title", zab::utf8FromUtf16(parser.title())}, {"entries", entries}}};
}

constexpr Option kYoutubeOptions[] = {
    kFile,
    {"--video-info", "The file is a URL-encoded video-info reply", &Arguments::videoInfo},
};

Answer runFacebook(const Arguments& arguments) {
    const std::u16string text = zab::utf16FromUtf8(arguments.bytes());
    zab::CFacebookParser parser;
    const bool recognised = parser.parse(text);
    Json entries = Json::array();
    for (const auto& entry : parser.entries()) {
        entries.push_back({{"url", zab::utf8FromUtf16(entry.url)},
                           {"durationSeconds", entry.durationSeconds},
                           {"isHd", entry.isHd}});
    }
    return {recognised, {{"entries", entries}}};
}

Answer runVimeo(const Arguments& arguments) {
    const std::string bytes = arguments.bytes();
    zab::CVimeoParser parser;
    const bool recognised = parser.parse(bytes);
    Json renditions = Json::array();
    for (const auto& rendition : parser.renditions()) {
        renditions.push_back(
            {{"url", zab::wellFormedUtf8(rendition.url)}, {"quality", zab::wellFormedUtf8(rendition.quality)}});
    }
    return {recognised, {{"title", zab::wellFormedUtf8(parser.title())}, {"renditions", renditions}}};
}

constexpr std::uint32_t kProgressiveWithTwins[] = {5, 17, 18, 22, 34, 35, 36, 37, 38};

Answer runItag(const Arguments& arguments) {
    const auto itag = static_cast<std::uint32_t>(arguments.itag);
    const auto container = zab::itagContainer(itag);
    zab::ItagDescription description;
    const bool offered = zab::itagDescribe(
        itag, {.adaptive = arguments.adaptive, .skipFlv = arguments.skipFlv, .webm = arguments.webm},
        description);
    Json twinOf = Json::array();
    for (const auto progressive : kProgressiveWithTwins)
        if (zab::hasTwin(progressive, itag)) twinOf.push_back(progressive);
    return {container.has_value(),
            {{"known", container ? 1 : 0},
             {"container", container.value_or("")},
             {"offered", offered ? 1 : 0},
             {"extension", zab::utf8FromUtf16(description.extension)},
             {"describedContainer", description.container},
             {"label", description.label},
             {"adaptiveVideo", zab::isAdaptiveVideo(itag, -1)},
             {"twinOf", twinOf}}};
}

constexpr Option kItagOptions[] = {
    {"N", "The itag", &Arguments::itag, kRequired, UINT32_MAX},
    {"--adaptive", "Adaptive formats are wished", &Arguments::adaptive},
    {"--skip-flv", "FLV is to be skipped", &Arguments::skipFlv},
    {"--webm", "WebM is wished", &Arguments::webm},
};

Answer runSame(const Arguments& arguments) {
    const std::u16string a = zab::utf16FromUtf8(arguments.text);
    const std::u16string b = zab::utf16FromUtf8(arguments.secondText);
    return {true,
            {{"sameStream", zab::sameStream(a, b, true) ? 1 : 0},
             {"sameStreamNoSignature", zab::sameStream(a, b, false) ? 1 : 0},
             {"sameId", zab::sameId(a, b) ? 1 : 0},
             {"sameIdAndItag", zab::sameIdAndItag(a, b) ? 1 : 0},
             {"withoutRange", zab::utf8FromUtf16(zab::withoutRange(a))}}};
}

constexpr Option kSameOptions[] = {
    {"A", "The request's URL", &Arguments::text, kRequired},
    {"B", "The catalogue's URL", &Arguments::secondText, kRequired},
};

constexpr Command kCommands[] = {
    {"youtube", "The streams of a watch page or player response", kYoutubeOptions, runYoutube},
    {"facebook", "The video addresses of a page", kFileAlone, runFacebook},
    {"vimeo", "The progressive renditions of a player page or configuration", kFileAlone, runVimeo},
    {"itag", "What is known of a YouTube format number", kItagOptions, runItag},
    {"same", "Whether two media URLs name the same stream", kSameOptions, runSame},
};

}  // namespace

std::span<const Command> siteCommands() { return kCommands; }

}  // namespace zabprobe
