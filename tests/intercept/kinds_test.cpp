#include "intercept/kinds.h"

#include <gtest/gtest.h>

#include "intercept/load_types.h"
#include "intercept/mime_classes.h"
#include "readings.h"
#include "web/url.h"

namespace zab {
namespace {

struct Response {
    std::string_view url, type;
    std::int64_t length = 0;
    std::uint32_t loadFlags = 0, status = 200, panelView = 1;
};

MediaKind kindOf(const Response& response) {
    const auto& [url, type, length, loadFlags, status, panelView] = response;
    GivenSettings settings;
    settings.panelView = panelView;
    return mediaKindOf({url, hostOf(url), behindHost(url), pathOf(url), type, extensionOf(lastSegmentOf(url)),
                        ClassifyMimeType(type), length, status, loadFlags},
                       settings);
}

TEST(Kinds, FirstRowThatAppliesDecides) {
    constexpr std::string_view kText = "text/plain";  // is not sniffed
    const zabtest::ReadingOf<std::string_view, Response> rows[] = {
        {{"https://www.youtube.com/get_video_info?x=1", kText}, "YouTube video info", "reply"},
        {{"https://r1.googlevideo.com/api_video_info?el=adunit", kText}, "YouTube video info", "this form"},
        {{"https://youtube.com:443/get_video_info?a=b&el=adunit", kText}, "", "an advertisement"},
        {{"https://youtube.com/get_video_info", kText}, "", "the path ends in its question mark"},
        {{"https://youtube.com/x/get_video_info?", kText}, "", "behind host and port at once"},
        {{"https://notyoutube.com/get_video_info?", kText}, "", "another host"},
        {{"https://youtube.com/watch?v=1", "application/json; x"}, "YouTube watch page", "page data"},
        {{"https://youtube.com/watch?x&spf=1", "application/json"}, "YouTube watch page", "page data"},
        {{"https://youtube.com/watch?xv=1", "application/json"}, "", "no video"},
        {{"https://youtube.com/watch?v=1", "text/html"}, "", "the page itself"},
        {{"http://h/", "application/vnd.lumberjack.manifest", 100'000}, "fragment manifest", "the limit"},
        {{"http://h/", "application/vnd.lumberjack.manifest", 100'001}, "sniff", "a byte more"},
        {{"http://h/a.M3U", kText, 9'000'000}, "HLS", "by extension, of any length"},
        {{"http://h/a", "Audio/MpegURL"}, "HLS", "a type whose class is MP3"},
        {{"http://player.vimeo.com/video/a.m3u8", kText}, "HLS", "the extension decides before"},
        {{"http://player.vimeo.com/video/1?x", "text/html"}, "Vimeo player", "player"},
        {{"http://player.vimeo.com/videos", "text/html"}, "Vimeo player", "a path prefix"},
        {{"http://vimeo.com/video/1", "text/html"}, "", "not the player's host"},
        {{"http://h/a.f4m", kText, 100'000}, "HDS", "by extension"},
        {{"http://h/a", "application/f4m+xml"}, "HDS", "by type"},
        {{"http://h/a.f4m", kText, 100'001}, "", "too long"},
        {{"http://manifest.googlevideo.com/api/manifest/x", "image/png"}, "YouTube DASH manifest", "any type"},
        {{"http://r1.googlevideo.com/api/manifest/x", kText}, "", "another host"},
        {{"http://h/a.mpd", kText, 3'000'000}, "DASH", "by extension"},
        {{"http://h/a", "application/dash+xmlish"}, "DASH", "by type, a prefix"},
        {{"http://h/a.mpd", kText, 3'000'001}, "", "too long by extension"},
        {{"http://www.facebook.com/ajax/x", kText}, "Facebook", "page"},
        {{"http://www.facebook.com/Ajax/x", kText}, "", "a path in its letter case"},
        {{"http://h/ajax/x", kText}, "", "not on the host of that path"},
        {{"http://h/v/aSeg1-Frag12?x", kText}, "HDS fragment", "fragment"},
        {{"http://h/aSeg-Frag1", kText}, "", "no number"},
        {{"http://h/aSeg1-Frag", kText}, "", "no number"},
        {{"http://h/Seg1-Frag1/x", kText}, "", "not in the last segment"},
        {{"http://h/a.pls", kText, 2'047}, "link text", "by extension"},
        {{"http://h/a.pls", kText, 2'048}, "", "too long"},
        {{"http://h/a", "audio/x-pn-realaudio-plugin"}, "link text", "by type, a prefix"},
        {{"http://h/a", "", 499'000}, "sniff", "no type"},
        {{"http://h/a", "", 499'001}, "", "too long"},
        {{"http://h/a", "application/xml", 100'000}, "sniff", "XML"},
        {{"http://h/a", "application/rss+XML", 100'001}, "", "long XML"},
        {{"http://h/a", "image/svg+xml", 1}, "", "a picture, though it is XML"},
        {{"http://r1.googlevideo.com/videoplayback?x&itag=18", "video/mp4", 1}, "", "a stream of a catalogue"},
        {{"http://h/videoplayback?itag=18", "video/mp4", 1}, "sniff", "on another host"},
        {{"http://h/a.pls", "text/html; charset=x", 9, kTopLevelLoad}, "page", "before the link text"},
        {{"http://h/a.pls", "text/html", 9, kTopLevelLoad, 200, 0}, "link text", "the panel is off"},
        {{"http://h/a.pls", "text/html", 9, kTopLevelLoad, 206}, "link text", "a part of a page"},
        {{"http://h/a.pls", "text/html", 9, kDocumentLoad}, "link text", "a frame"},
        {{"http://player.vimeo.com/video/1", "text/html", 9, kTopLevelLoad}, "Vimeo player", "of a player"},
    };
    zabtest::expectReadings([](const auto& response) { return mediaKindName(kindOf(response)); }, rows);
}

TEST(Kinds, TheNameOfAnHdsFragment) {
    const auto found = findHdsFragmentName("SegSeg1-FragSeg22-Frag3x").value();
    EXPECT_EQ(std::pair(found.begin, found.end), std::pair(std::size_t{12}, std::size_t{23}));
}

}  // namespace
}  // namespace zab
