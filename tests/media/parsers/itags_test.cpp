#include "media/parsers/itags.h"

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

#include "binding/utf.h"
#include "readings.h"

namespace zab {
namespace {

using zabtest::expectReadings;
using zabtest::Reading;

TEST(ItagTable, DescribesWhatIsOfferedAndSomeThatIsNot) {
    // Behind the number the wishes: "a"daptive, "w"ebm, "s"kip FLV. A "+" in front of what is offered.
    const auto read = [](const std::string& text) {
        const auto wishes = [&text](char letter) { return text.find(letter) != text.npos; };
        ItagDescription got{u"?", "?", "?"};
        const bool offered = itagDescribe(static_cast<std::uint32_t>(std::stoul(text)),
                                          {wishes('a'), wishes('s'), wishes('w')}, got);
        return (offered ? "+" : "") + utf8FromUtf16(got.extension) + ", " + std::string(got.container) + ", " +
               std::string(got.label);
    };
    const Reading rows[] = {
        {"18", "+mp4, MP4, 360p", "always offered"},
        {"34", "+flv, FLV, 360p", "FLV unless skipped"},
        {"34s", "?, ?, ?", "skipped FLV sets nothing"},
        {"43", "webm, WEBM, 360p", "described though not wished"},
        {"101w", "+webm, WEBM, 360p 3D", "wished; second number of one format"},
        {"137", "mp4, MP4, 1080p HD", "silent video needs the wish"},
        {"137a", "+mp4, MP4, 1080p HD", "wished"},
        {"171a", "MKV, MKV, ?", "no label, the old one stays"},
        {"247a", "MKV, MKV, 720p HD", "never offered"},
        {"264a", "+mp4, MP4, 1080p HD, high bitrate", "meant so"},
        {"266a", "+mp4, mp4, 2160p 4K", "container in lower case"},
        {"315a", "MKV, MKV, 2160p K, 60fps", "meant so"},
        {"140a", "?, ?, ?", "sound is not described"},
        {"4a", "?, ?, ?", "before the first"},
        {"316a", "?, ?, ?", "behind the last"},
    };
    expectReadings(read, rows);
}

TEST(ItagTable, KnowsContainerAndKind) {
    const auto read = [](const std::string& number) {
        const auto itag = static_cast<std::uint32_t>(std::stoul(number));
        const int video = isAdaptiveVideo(itag, -1);
        return std::string(itagContainer(itag).value_or("none")) + (video == 1   ? " video"
                                                                    : video == 0 ? " audio"
                                                                                 : "");
    };
    const Reading rows[] = {
        {"5", "FLV", "progressive"},
        {"46", "WEBM", "progressive WebM"},
        {"133", "MP4 video", "video"},
        {"248", "MKV video", "WebM video"},
        {"266", "MP4 video", "upper case here"},
        {"141", "MP4 audio", "AAC"},
        {"172", "MKV audio", "Vorbis"},
        {"251", "MKV audio", "Opus"},
        {"265", "none", "hole in a range"},
        {"4294967295", "none", "the largest"},
    };
    expectReadings(read, rows);
}

TEST(ItagTwins, AreThePairsAndEverythingUnlisted) {
    const auto read = [](const std::string& pair) {
        std::uint32_t progressive, adaptive;
        std::istringstream(pair) >> progressive >> adaptive;
        return hasTwin(progressive, adaptive) ? "twin" : "";
    };
    const Reading rows[] = {
        {"5 133", "twin", "first of two"},
        {"36 133", "twin", "second of two"},
        {"18 133", "", "other picture"},
        {"38 266", "twin", "shares 138's"},
        {"17 160", "twin", "the smallest"},
        {"38 264", "", "264 has none"},
        {"0 302", "", "not even an unread itag"},
        {"18 140", "twin", "sound counts"},
        {"18 278", "twin", "unlisted video counts"},
        {"18 132", "twin", "what the table does not know"},
        {"0 134", "", "an unread progressive itag is no twin of a listed one"},
    };
    expectReadings(read, rows);
}

TEST(AudioPairing, FollowsListOrderAndStopsWhenContent) {
    const auto read = [](const std::string& videoAndList) {
        std::istringstream numbers(videoAndList);
        std::uint32_t video, itag;
        numbers >> video;
        std::vector<std::uint32_t> list;
        while (numbers >> itag) list.push_back(itag);
        const auto* chosen = pickAudio(list, video, [](std::uint32_t each) { return each; });
        return chosen == nullptr ? "" : std::to_string(*chosen);
    };
    const Reading rows[] = {
        {"303 140 250 251 141", "251", "the best Opus ends it"},
        {"303 250 249 140", "250", "249 and AAC do not replace 250"},
        {"303 249 250", "250", "250 replaces 249"},
        {"303 140 249 141", "249", "Opus replaces AAC"},
        {"302 251 140", "140", "no Opus for 302"},
        {"137 140 141 140", "141", "content with 141"},
        {"134 141 140 141", "140", "content with 140"},
        {"248 141 140", "140", "not content: the last counts"},
        {"137 139 140 139", "140", "139 only when there is nothing else"},
        {"137 139", "139", "better than silence"},
        {"137 18 0 251 171", "", "none fits"},
    };
    expectReadings(read, rows);
}

}  // namespace
}  // namespace zab
