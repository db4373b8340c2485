#include "media/parsers/itags.h"

#include <gtest/gtest.h>

#include <vector>

namespace zab {
namespace {

TEST(ItagTable, DescribesWhatIsOfferedAndSomeThatIsNot) {
    const ItagWishes none, skipFlv{.skipFlv = true}, webm{.webm = true}, adaptive{.adaptive = true};
    const struct {
        std::uint32_t itag;
        ItagWishes wishes;
        bool offered;
        std::u16string_view extension;
        std::string_view container, label;
        const char* why;
    } rows[] = {
        {18, none, true, u"mp4", "MP4", "360p", "always offered"},
        {34, none, true, u"flv", "FLV", "360p", "FLV unless skipped"},
        {34, skipFlv, false, u"?", "?", "?", "skipped FLV sets nothing"},
        {43, none, false, u"webm", "WEBM", "360p", "described though not wished"},
        {43, webm, true, u"webm", "WEBM", "360p", "wished"},
        {101, webm, true, u"webm", "WEBM", "360p 3D", "second number of one format"},
        {137, none, false, u"mp4", "MP4", "1080p HD", "silent video needs the wish"},
        {137, adaptive, true, u"mp4", "MP4", "1080p HD", "wished"},
        {171, adaptive, false, u"MKV", "MKV", "?", "no label, the old one stays"},
        {247, adaptive, false, u"MKV", "MKV", "720p HD", "never offered"},
        {264, adaptive, true, u"mp4", "MP4", "1080p HD, high bitrate", "meant so"},
        {266, adaptive, true, u"mp4", "mp4", "2160p 4K", "container in lower case"},
        {315, adaptive, false, u"MKV", "MKV", "2160p K, 60fps", "meant so"},
        {140, adaptive, false, u"?", "?", "?", "sound is not described"},
        {249, adaptive, false, u"?", "?", "?", "between the two ranges"},
        {4, adaptive, false, u"?", "?", "?", "before the first"},
        {316, adaptive, false, u"?", "?", "?", "behind the last"},
    };
    for (const auto& row : rows) {
        ItagDescription got{u"?", "?", "?"};
        EXPECT_EQ(itagDescribe(row.itag, row.wishes, got), row.offered) << row.itag << ' ' << row.why;
        EXPECT_TRUE(got.extension == row.extension) << row.itag << ' ' << row.why;
        EXPECT_EQ(got.container, row.container) << row.itag << ' ' << row.why;
        EXPECT_EQ(got.label, row.label) << row.itag << ' ' << row.why;
    }
}

TEST(ItagTable, KnowsContainerAndKind) {
    const struct {
        std::uint32_t itag;
        const char* container;
        int adaptiveVideo;
        const char* why;
    } rows[] = {
        {5, "FLV", -1, "progressive"},
        {46, "WEBM", -1, "progressive WebM"},
        {133, "MP4", 1, "video"},
        {160, "MP4", 1, "video"},
        {248, "MKV", 1, "WebM video"},
        {266, "MP4", 1, "upper case here"},
        {141, "MP4", 0, "AAC"},
        {172, "MKV", 0, "Vorbis"},
        {251, "MKV", 0, "Opus"},
        {0, "none", -1, "no itag"},
        {265, "none", -1, "hole in a range"},
        {4294967295u, "none", -1, "the largest"},
    };
    for (const auto& row : rows) {
        const auto container = itagContainer(row.itag);
        EXPECT_EQ(container.value_or("none"), row.container) << row.itag << ' ' << row.why;
        EXPECT_EQ(isAdaptiveVideo(row.itag, -1), row.adaptiveVideo) << row.itag << ' ' << row.why;
    }
}

TEST(ItagTwins, AreThePairsAndEverythingUnlisted) {
    const struct {
        std::uint32_t progressive, adaptive;
        bool twin;
        const char* why;
    } rows[] = {
        {5, 133, true, "first of two"},
        {36, 133, true, "second of two"},
        {18, 133, false, "other picture"},
        {38, 266, true, "shares 138's"},
        {17, 160, true, "the smallest"},
        {38, 264, false, "264 has none"},
        {22, 302, false, "302 has none"},
        {0, 302, false, "not even an unread itag"},
        {18, 140, true, "sound counts"},
        {18, 278, true, "unlisted video counts"},
        {18, 132, true, "below the list"},
        {18, 316, true, "above the list"},
        {0, 134, false, "an unread progressive itag is no twin of a listed one"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(hasTwin(row.progressive, row.adaptive), row.twin) << row.adaptive << ' ' << row.why;
}

TEST(AudioPairing, FollowsListOrderAndStopsWhenContent) {
    const struct {
        std::uint32_t video;
        std::vector<std::uint32_t> list;
        int chosen;
        const char* why;
    } rows[] = {
        {303, {140, 250, 251, 141}, 2, "the best Opus ends it"},
        {303, {250, 249, 140}, 0, "249 and AAC do not replace 250"},
        {303, {249, 250}, 1, "250 replaces 249"},
        {303, {140, 249, 141}, 1, "Opus replaces AAC"},
        {302, {251, 140}, 1, "no Opus for 302"},
        {137, {140, 141, 140}, 1, "content with 141"},
        {134, {141, 140, 141}, 1, "content with 140"},
        {248, {141, 140}, 1, "not content: the last counts"},
        {137, {139, 140, 139}, 1, "139 only when there is nothing else"},
        {137, {139}, 0, "better than silence"},
        {137, {18, 0, 251, 171}, -1, "none fits"},
        {137, {}, -1, "empty list"},
    };
    for (const auto& row : rows) {
        const auto* chosen = pickAudio(row.list, row.video, [](std::uint32_t itag) { return itag; });
        EXPECT_EQ(chosen == nullptr ? -1 : chosen - row.list.data(), row.chosen) << row.why;
    }
}

}  // namespace
}  // namespace zab
