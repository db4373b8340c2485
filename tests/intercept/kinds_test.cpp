#include "intercept/kinds.h"

#include <gtest/gtest.h>

#include "intercept/load_types.h"
#include "intercept/mime_classes.h"
#include "web/url.h"

namespace zab {
namespace {

struct Case {
    std::string_view url, type;
    std::int64_t length;
    MediaKind kind;
    const char* why;
};

KindFacts factsOf(const Case& row, std::uint32_t loadFlags = 0) {
    return {row.url,
            hostOf(row.url),
            behindHost(row.url),
            pathOf(row.url),
            row.type,
            extensionOf(lastSegmentOf(row.url)),
            ClassifyMimeType(row.type),
            row.length,
            200,
            loadFlags};
}

constexpr MediaKind kNone = MediaKind::none, kSniff = MediaKind::sniff;
constexpr std::string_view kText = "text/plain";  // is not sniffed

const Case kCases[] = {
    {"https://www.youtube.com/get_video_info?x=1", kText, 0, MediaKind::youtubeVideoInfo, "reply"},
    {"https://r1.googlevideo.com/api_video_info?el=adunit", kText, 0, MediaKind::youtubeVideoInfo, "this form"},
    {"https://youtube.com:443/get_video_info?a=b&el=adunit", kText, 0, kNone, "an advertisement"},
    {"https://youtube.com/get_video_info", kText, 0, kNone, "the path ends in its question mark"},
    {"https://youtube.com/x/get_video_info?", kText, 0, kNone, "behind host and port at once"},
    {"https://notyoutube.com/get_video_info?", kText, 0, kNone, "another host"},

    {"https://youtube.com/watch?v=1", "application/json; x", 0, MediaKind::youtubeWatchPage, "page data"},
    {"https://youtube.com/watch?x&spf=1", "application/json", 0, MediaKind::youtubeWatchPage, "page data"},
    {"https://youtube.com/watch?xv=1", "application/json", 0, kNone, "no video"},
    {"https://youtube.com/watch?v=1", "text/html", 0, kNone, "the page itself"},

    {"http://h/", "application/vnd.lumberjack.manifest", 100'000, MediaKind::fragmentManifest, "the limit"},
    {"http://h/", "application/vnd.lumberjack.manifest", 100'001, kSniff, "a byte more"},

    {"http://h/a.M3U", kText, 9'000'000, MediaKind::hls, "by extension, of any length"},
    {"http://h/a", "Audio/MpegURL", 0, MediaKind::hls, "a type whose class is MP3"},
    {"http://h/a", "application/vnd.apple.mpegurlx", 0, MediaKind::hls, "by type"},
    {"http://player.vimeo.com/video/a.m3u8", kText, 0, MediaKind::hls, "the extension decides before"},

    {"http://player.vimeo.com/video/1?x", "text/html", 0, MediaKind::vimeoPlayer, "player"},
    {"http://player.vimeo.com/videos", "text/html", 0, MediaKind::vimeoPlayer, "a path prefix"},
    {"http://vimeo.com/video/1", "text/html", 0, kNone, "not the player's host"},

    {"http://h/a.f4m", kText, 100'000, MediaKind::hds, "by extension"},
    {"http://h/a", "application/f4m+xml", 0, MediaKind::hds, "by type"},
    {"http://h/a.f4m", kText, 100'001, kNone, "too long"},

    {"http://manifest.googlevideo.com/api/manifest/x", "image/png", 0, MediaKind::youtubeDash, "any type"},
    {"http://r1.googlevideo.com/api/manifest/x", kText, 0, kNone, "another host"},

    {"http://h/a.mpd", kText, 3'000'000, MediaKind::dash, "by extension"},
    {"http://h/a", "application/dash+xmlish", 0, MediaKind::dash, "by type, a prefix"},
    {"http://h/a.mpd", kText, 3'000'001, kNone, "too long by extension"},

    {"http://www.facebook.com/ajax/x", kText, 0, MediaKind::facebook, "page"},

    {"http://h/v/aSeg1-Frag12?x", kText, 0, MediaKind::hdsFragment, "fragment"},
    {"http://h/SegSeg1-FragSeg22-Frag3", kText, 0, MediaKind::hdsFragment, "the first whole name"},
    {"http://h/aSeg-Frag1", kText, 0, kNone, "no number"},
    {"http://h/aSeg1-Frag", kText, 0, kNone, "no number"},
    {"http://h/Seg1-Frag1/x", kText, 0, kNone, "not in the last segment"},

    {"http://h/a.pls", kText, 2'047, MediaKind::linkText, "by extension"},
    {"http://h/a.pls", kText, 2'048, kNone, "too long"},
    {"http://h/a", "audio/x-pn-realaudio-plugin", 0, MediaKind::linkText, "by type, a prefix"},

    {"http://h/a", "", 499'000, kSniff, "no type"},
    {"http://h/a", "", 499'001, kNone, "too long"},
    {"http://h/a", "application/xml", 100'000, kSniff, "XML"},
    {"http://h/a", "application/rss+XML", 100'001, kNone, "long XML"},
    {"http://h/a", "image/svg+xml", 1, kNone, "a picture, though it is XML"},
    {"http://r1.googlevideo.com/videoplayback?x&itag=18", "video/mp4", 1, kNone, "a stream of a catalogue"},
    {"http://h/videoplayback?itag=18", "video/mp4", 1, kSniff, "on another host"},
};

TEST(Kinds, FirstRowThatAppliesDecides) {
    const GivenSettings settings;
    for (const Case& row : kCases)
        EXPECT_EQ(mediaKindName(mediaKindOf(factsOf(row), settings)), mediaKindName(row.kind))
            << row.url << " " << row.type << ": " << row.why;
}

TEST(Kinds, APageIsOneOnlyWhenNothingElseWantsIt) {
    GivenSettings settings;
    KindFacts page = factsOf({"http://h/a.pls", "text/html; charset=x", 9, kNone, ""}, kTopLevelLoad);
    EXPECT_EQ(mediaKindOf(page, settings), MediaKind::page) << "before the link text";
    const auto player = factsOf({"http://player.vimeo.com/video/1", "text/html", 0, kNone, ""}, kTopLevelLoad);
    EXPECT_EQ(mediaKindOf(player, settings), MediaKind::vimeoPlayer);
    settings.panelView = 0;
    EXPECT_EQ(mediaKindOf(page, settings), MediaKind::linkText) << "the panel is off";
    settings.panelView = 1;
    page.status = 206;
    EXPECT_EQ(mediaKindOf(page, settings), MediaKind::linkText) << "a part of one is none";
    page.status = 200;
    page.loadFlags = kDocumentLoad;
    EXPECT_EQ(mediaKindOf(page, settings), MediaKind::linkText) << "nor is a frame";
}

TEST(Kinds, TheNameOfAnHdsFragment) {
    const auto found = findHdsFragmentName("SegSeg1-FragSeg22-Frag3x").value();
    EXPECT_EQ(std::pair(found.begin, found.end), std::pair(std::size_t{12}, std::size_t{23}));
}

}  // namespace
}  // namespace zab
