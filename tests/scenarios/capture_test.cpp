// Bodies that describe media: what the module reads of them becomes the entries of their page, as the button
// library is told them.
#include "desk/desk.h"
#include "intercept/kinds.h"
#include "scenarios/import_hook.h"
#include "scenarios/scenario.h"

namespace zab::testbed {
namespace {

using namespace std::string_literals;

/// A response of one kind, with all that its body offers: a line for each entry, its link and its label.
struct Row {
    MediaKind kind;
    const char* url;
    const char* type;
    std::string body;
    const char* entries;
};

std::string box(std::string_view type, const std::string& payload) {
    return "\0\0\0"s + static_cast<char>(8 + payload.size()) + std::string(type) + payload;
}

std::string stream(int itag) {
    return "url=http%3A%2F%2Fg.example%2Fvideoplayback%3Fid%3D1%26itag%3D" + std::to_string(itag) +
           "\\u0026itag=" + std::to_string(itag);
}

const std::string kVideoTag = "\x9\0\0\3\0\0\0\0\0\0\0abc\0\0\0\xE"s;

const Row kRows[] = {
    {MediaKind::page, "http://site.example/page.html", "text/html",
     "<title>x</title><video src='a.mp4'></video><p>text</p><embed src='/b.mp3'>",
     "http://site.example/a.mp4\ta.mp4\n"
     "http://site.example/b.mp3\tb.mp3\n"},
    {MediaKind::linkText, "http://h.example/list.pls", "audio/x-scpls",
     "File1=http://a.example/x.mp3\nFile2=mms://b\n",
     "mms://b\tPage\n"
     "http://a.example/x.mp3\tx.mp3\n"},
    {MediaKind::youtubeWatchPage, "http://www.youtube.com/watch?v=1", "application/json",
     "\"url_encoded_fmt_stream_map\":\"" + stream(22) + "," + stream(43) + "\",\"adaptive_fmts\":\"" +
         stream(137) + "," + stream(140) + "\"",
     "ytatozab://http://g.example/videoplayback?id=1&itag=137\t1080p HD MP4\n"
     "ytatozab://http://g.example/videoplayback?id=1&itag=22\t720p HD MP4\n"
     "ytatozab://http://g.example/videoplayback?id=1&itag=43\t360p WEBM\n"},
    {MediaKind::hls, "http://h.example/d/list.m3u8", "application/x-mpegURL",
     "#EXTM3U\n#EXT-X-MEDIA:TYPE=AUDIO,GROUP-ID=\"g\",URI=\"a.m3u8\"\n"
     "#EXT-X-STREAM-INF:BANDWIDTH=1048576,RESOLUTION=1280x720,AUDIO=\"g\"\nv/hd.m3u8\n"
     "#EXT-X-STREAM-INF:BANDWIDTH=524288,RESOLUTION=640x360\nv/sd.m3u8\n",
     "hls2tozab://http://h.example/d/v/hd.m3u8\t720p bitrate 1024, TS\n"
     "hlstozab://http://h.example/d/v/sd.m3u8\t360p bitrate 512, TS\n"},
    {MediaKind::hds, "http://h.example/m.f4m", "text/plain",
     "<?xml version='1.0'?><manifest xmlns=\"http://ns.adobe.com/f4m/1.0\"><duration>9.9</duration>"
     "<bootstrapInfo>B</bootstrapInfo><media url='v' height='720' bitrate='1500'/></manifest>",
     "dhstozab://http://h.example/m.f4m\t720p bitrate 1500, FLV, 9 sec\n"},
    {MediaKind::hdsFragment, "http://h.example/d/film_Seg1-Frag2", "video/f4f",
     box("afra", "x") + box("mdat", kVideoTag + kVideoTag),
     "dhs2tozab://http://h.example/d/film_Seg%ld-Frag%ld\tfilm, FLV\n"},
};

class CapturedBodies : public ScreenScenario {
  protected:
    CapturedBodies() { settings.set("ZABBI\\Firefox\\DwnlPanel\\!ALL!", 1u); }

    /// The answer's headers have come; `length` 0: without one.
    Channel& answers(const Row& row, Page& page, std::size_t length) {
        const bool isPage = row.kind == MediaKind::page;
        auto& channel = browser.requests({.url = row.url,
                                          .headers = {{"Referer", "http://site.example/frame"}},
                                          .loadFlags = isPage ? kTopLevelLoad : kEmbedded,
                                          .page = isPage ? nullptr : &page});
        Headers headers{{"Content-Type", row.type}};
        if (length != 0) headers.emplace_back("Content-Length", std::to_string(length));
        browser.answers(channel, 200, headers);
        channel.request.page = &page;  // a top-level load has become a page
        EXPECT_EQ(channel.listeners.size(), 1u) << mediaKindName(row.kind);
        return channel;
    }
    /// What the page's button offers, without the line that stands for all.
    std::string entries() const {
        std::string lines;
        for (const auto button : window->buttons(true)) {
            const DeskWindow& shown = desk().windows[button];
            for (std::size_t i = 0; i < shown.links.size() && shown.links[i] != u"!ALL!"; ++i)
                lines += utf8FromUtf16(shown.links[i] + u"\t" + shown.labels[i] + u"\n");
        }
        return lines;
    }
    void closes(Page& page) {
        browser.mouse(u"unload", &page);
        Browser::dropsPage(page);
        desk().servesMessages();
        browser.sweeps();
    }
};

TEST_F(CapturedBodies, OfEveryKindAreEntries) {
    for (const Row& row : kRows) {
        for (const std::size_t length : {row.body.size(), std::size_t{0}}) {
            auto& page = opensPage();
            auto& channel = answers(row, page, length);
            browser.receives(channel, row.body, 7);
            browser.finishes(channel);
            EXPECT_EQ(entries(), row.entries) << mediaKindName(row.kind) << ", " << length;
            closes(page);
        }
    }
}

TEST_F(CapturedBodies, LoseNothingButTheirEntriesToAFault) {
    const ImportHook hook(browser, {});
    for (const Row& row : kRows) {
        bool reached = true;
        std::uint32_t n = 0;
        for (; reached; ++n) {
            auto& page = opensPage();
            auto& channel = answers(row, page, row.body.size());
            browser.faults().failNth(n + 1);
            browser.receives(channel, row.body, 100);
            browser.finishes(channel);
            reached = browser.faults().reached();
            const std::string operation = browser.faults().failedOperation();
            browser.faults().none();
            EXPECT_TRUE(reached || entries() == row.entries) << entries();
            closes(page);
            ASSERT_EQ(browser.unbalanced(), "") << mediaKindName(row.kind) << ": " << operation;
            ASSERT_EQ(desk().lockHeld, 0) << mediaKindName(row.kind) << ": " << operation;
        }
        EXPECT_GT(n, 10u) << mediaKindName(row.kind);
    }
}

}  // namespace
}  // namespace zab::testbed
