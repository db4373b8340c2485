#include "media/parsers/itags.h"

#include <functional>
#include <sstream>
#include <vector>

#include "binding/utf.h"
#include "readings.h"

using namespace zab;
using namespace zabtest;

namespace {

TEST(ItagTable, SaysWhatAStreamIsAndWhetherItIsOffered) {
    // Behind the number the wishes: "a"daptive, "w"ebm, "s"kip FLV. A "+" in front of what is offered; what is
    // not described stays "?".
    const auto read = [](const std::string& text) {
        const auto itag = static_cast<std::uint32_t>(std::stoul(text));
        const auto wishes = [&text](char letter) { return text.find(letter) != text.npos; };
        ItagDescription got{u"?", "?", "?"};
        std::ostringstream all;
        all << (itagDescribe(itag, {wishes('a'), wishes('s'), wishes('w')}, got) ? "+" : "")
            << utf8FromUtf16(got.extension) << ' ' << got.container << ' ' << got.label << "; "
            << itagContainer(itag).value_or("none") << ' ' << isAdaptiveVideo(itag, -1);
        return all.str();
    };
    const Reading rows[] = {
        {"18", "+mp4 MP4 360p; MP4 -1", "always offered"},
        {"34", "+flv FLV 360p; FLV -1", "FLV unless skipped"},
        {"34s", "? ? ?; FLV -1", "skipped FLV sets nothing"},
        {"43", "webm WEBM 360p; WEBM -1", "described though not wished"},
        {"137", "mp4 MP4 1080p HD; MP4 1", "silent video needs the wish"},
        {"137a", "+mp4 MP4 1080p HD; MP4 1", "wished"},
        {"171a", "MKV MKV ?; MKV 0", "no label, the old one stays"},
        {"264a", "+mp4 MP4 1080p HD, high bitrate; MP4 1", "meant so"},
        {"266a", "+mp4 mp4 2160p 4K; MP4 1", "described in lower case"},
        {"140a", "? ? ?; MP4 0", "sound is not described"},
        {"265a", "? ? ?; none -1", "a hole"},
    };
    expectReadings(read, rows);
}

TEST(ItagTable, KnowsTheseStreams) {
    std::string known;
    for (std::uint32_t itag = 0; itag < 400; ++itag)
        if (itagContainer(itag)) known += std::to_string(itag) + ' ';
    EXPECT_EQ(
        known,
        "5 17 18 22 34 35 36 37 38 43 44 45 46 82 83 84 85 100 101 102 133 134 135 136 137 138 139 140 141 160 "
        "171 172 242 243 244 245 246 247 248 249 250 251 264 266 271 272 278 298 299 302 303 308 313 315 ");
}

TEST(ItagTwins, AreThePairsAndEverythingUnlisted) {
    std::string twins;
    for (std::uint32_t adaptive = 0; adaptive < 400; ++adaptive) {
        if (hasTwin(0, adaptive)) continue;  // sound, unlisted videos, what the table does not know
        twins += " of " + std::to_string(adaptive);
        for (std::uint32_t progressive = 0; progressive < 103; ++progressive)
            if (hasTwin(progressive, adaptive)) twins += ' ' + std::to_string(progressive);
    }
    EXPECT_EQ(
        twins,
        " of 133 5 36 of 134 18 of 135 35 of 136 22 of 137 37 of 138 38 of 160 17 of 264 of 266 38 of 298 of "
        "299 of 302 of 303 of 308 of 313 of 315");
}

/// Of a list of audio itags the one for a video; 0: none.
std::uint32_t picked(std::uint32_t video, const std::vector<std::uint32_t>& list) {
    const auto* chosen = pickAudio(list, video, std::identity{});
    return chosen == nullptr ? 0 : *chosen;
}

TEST(AudioPairing, FollowsListOrderAndStopsWhenContent) {
    const auto pairedWith = [](std::uint32_t audio, const std::vector<std::uint32_t>& list) {
        std::string videos;
        for (std::uint32_t video = 0; video < 400; ++video)
            if (picked(video, list) == audio) videos += std::to_string(video) + ' ';
        return videos;
    };
    EXPECT_EQ(pairedWith(141, {141, 140}), "135 136 137 138 264 266 298 299 ");
    EXPECT_EQ(pairedWith(140, {140, 141}), "133 134 160 ");
    EXPECT_EQ(pairedWith(251, {140, 251}), "303 308 313 315 ");
    EXPECT_EQ(picked(303, {140, 250, 251, 141}), 251u) << "the best Opus ends it";
    EXPECT_EQ(picked(303, {250, 249, 140}), 250u) << "249 and AAC do not replace 250";
    EXPECT_EQ(picked(303, {140, 249, 141}), 249u) << "Opus replaces AAC";
    EXPECT_EQ(picked(137, {139, 140, 139}), 140u) << "139 only when there is nothing else";
    EXPECT_EQ(picked(137, {18, 0, 251, 171}), 0u) << "none fits";
}

}  // namespace
