// Bodies that describe media: what the module reads of them becomes the entries of their page, as the button
// library is told them.
#include <gtest/gtest.h>

#include "binding/library_win32.h"
#include "binding/utf.h"
#include "browser/hands.h"
#include "browser/process_view.h"
#include "browser/top_window.h"
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

std::string representation(int id, const char* base) {
    return "<Representation id=\"" + std::to_string(id) + "\"><BaseURL>" + base +
           "</BaseURL><SegmentList><SegmentURL media=\"x\"/></SegmentList></Representation>";
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
    {MediaKind::youtubeVideoInfo, "http://www.youtube.com/get_video_info?x", "text/plain",
     "title=Film&url_encoded_fmt_stream_map=url%3Dhttp%253A%252F%252Fg.example%252Fvideoplayback%253Fid%253D1%"
     "2526itag%253D22%26itag%3D22&z=1",
     "ytatozab://http://g.example/videoplayback?id=1&itag=22\t720p HD MP4\n"},
    {MediaKind::youtubeWatchPage, "http://www.youtube.com/watch?v=1", "application/json",
     "\"url_encoded_fmt_stream_map\":\"" + stream(22) + "," + stream(43) + "\",\"adaptive_fmts\":\"" +
         stream(137) + "," + stream(140) + "\"",
     "ytatozab://http://g.example/videoplayback?id=1&itag=137\t1080p HD MP4\n"
     "ytatozab://http://g.example/videoplayback?id=1&itag=22\t720p HD MP4\n"
     "ytatozab://http://g.example/videoplayback?id=1&itag=43\t360p WEBM\n"},
    {MediaKind::fragmentManifest, "http://h.example/m", "application/vnd.lumberjack.manifest",
     R"({"fragments": 12,"template" : "v\/$fragment$.mp4","height":720,"duration":9.9})",
     "http://h.example/v/1.mp4\t720p, 9 sec\n"},
    {MediaKind::hls, "http://h.example/d/list.m3u8", "application/x-mpegURL",
     "#EXTM3U\n#EXT-X-MEDIA:TYPE=AUDIO,GROUP-ID=\"g\",URI=\"a.m3u8\"\n"
     "#EXT-X-STREAM-INF:BANDWIDTH=1048576,RESOLUTION=1280x720,AUDIO=\"g\"\nv/hd.m3u8\n"
     "#EXT-X-STREAM-INF:BANDWIDTH=524288,RESOLUTION=640x360\nv/sd.m3u8\n",
     "hls2tozab://http://h.example/d/v/hd.m3u8\t720p bitrate 1024, TS\n"
     "hlstozab://http://h.example/d/v/sd.m3u8\t360p bitrate 512, TS\n"},
    {MediaKind::vimeoPlayer, "http://player.vimeo.com/video/1", "text/html",
     "<title>A film</title>\"progressive\":[{url:http://v.example/1,quality:720p,mime:video/mp4},"
     "{url:http://v.example/2,quality:360p,mime:video/mp4}]",
     "http://v.example/1\tA film 720p\n"
     "http://v.example/2\tA film 360p\n"},
    {MediaKind::hds, "http://h.example/m.f4m", "text/plain",
     "<?xml version='1.0'?><manifest xmlns=\"http://ns.adobe.com/f4m/1.0\"><duration>9.9</duration>"
     "<bootstrapInfo>B</bootstrapInfo><media url='v' height='720' bitrate='1500'/></manifest>",
     "dhstozab://http://h.example/m.f4m\t720p bitrate 1500, FLV, 9 sec\n"},
    {MediaKind::youtubeDash, "http://manifest.googlevideo.com/api/manifest/dash/1", "text/plain",
     "<MPD>" + representation(247, "http://v.example/a") + representation(140, "http://s.example/b") + "</MPD>",
     "ytatozab://http://v.example/a\t720p HD MKV\n"},
    {MediaKind::dash, "http://h.example/m.mpd", "application/dash+xml",
     "<?xml version=\"1.0\"?><MPD><Period><AdaptationSet mimeType=\"video/mp4\"><Representation id=\"hd\" "
     "height=\"720\" bandwidth=\"2048000\"/><Representation id=\"sd\" height=\"360\" bandwidth=\"512000\"/>"
     "</AdaptationSet></Period></MPD>",
     "mpdtozab://http://h.example/m.mpd&selected_id=hd\t720p HD bitrate 2000kbps, MP4\n"
     "mpdtozab://http://h.example/m.mpd&selected_id=sd\t360p bitrate 500kbps, MP4\n"},
    {MediaKind::facebook, "http://www.facebook.com/ajax/x", "text/plain",
     "videoData: hd_src:'http:\\/\\/f.example\\/h' sd_src:'http://f.example/s' </html>",
     "http://f.example/h\tPage HD\n"
     "http://f.example/s\tPage\n"},
    {MediaKind::hdsFragment, "http://h.example/d/film_Seg1-Frag2", "video/f4f",
     box("afra", "x") + box("mdat", kVideoTag + kVideoTag),
     "dhs2tozab://http://h.example/d/film_Seg%ld-Frag%ld\tfilm, FLV\n"},
    {MediaKind::sniff, "http://h.example/noname", "application/x-thing",
     "ZABFACTS\x9\x10\x11\x12\x13 and its sound", "http://h.example/noname\tnoname, 19 Bytes 9 sec\n"},
};

/// Without the line that stands for all.
std::string withoutAll(std::string lines) { return lines.substr(0, lines.find("!ALL!")); }

class Capture : public ::testing::Test {
  protected:
    Capture() {
        settings.setCompanions();
        settings.set("ZABBI\\Firefox\\DwnlPanel\\!ALL!", 1u);
        browser.startsUp();
    }
    ~Capture() override {
        EXPECT_EQ(browser.unbalanced(), "");
        EXPECT_EQ(browser.violations(), std::vector<std::string>{});
    }

    Page& opensPage() {
        auto& page = browser.opensPage("http://site.example/");
        page.nativeWindow = window.handle();
        return page;
    }
    /// The answer's headers have come; `length` 0: without one.
    Channel& answers(const Row& row, Page& page, std::size_t length) {
        const bool isPage = row.kind == MediaKind::page;
        auto& channel = browser.requests({.url = row.url,
                                          .loadFlags = isPage ? kTopLevelLoad : kEmbedded,
                                          .page = isPage ? nullptr : &page});
        Headers headers{{"Content-Type", row.type}};
        if (length != 0) headers.emplace_back("Content-Length", std::to_string(length));
        browser.answers(channel, 200, headers);
        channel.request.page = &page;  // a top-level load has become a page
        EXPECT_EQ(channel.listeners.size(), 1u) << mediaKindName(row.kind);
        return channel;
    }
    /// Its entries, as the button library knows them.
    static std::string entriesOf(const Page& page) {
        using StandIn_Entries_t = std::uint32_t(std::uint64_t document, char16_t* text, std::uint32_t capacity);
        const auto entries = exportOf<StandIn_Entries_t>(GetModuleHandleA("zabbrbtn64.dll"), "StandIn_Entries");
        if (entries == nullptr) return {};
        std::u16string lines(100'000, u'\0');
        lines.resize(entries(std::stoull(utf8FromUtf16(page.attributes.at(u"zabmzcc-ext-docid"))), lines.data(),
                             static_cast<std::uint32_t>(lines.size())));
        return withoutAll(utf8FromUtf16(lines));
    }
    void closes(Page& page) {
        browser.mouse(u"unload", &page);
        Browser::dropsPage(page);
        browser.sweeps();
    }
    /// One body from its first byte to its end.
    std::string captures(const Row& row, std::string_view received, std::size_t length,
                         std::size_t chunkBytes) {
        auto& page = opensPage();
        auto& channel = answers(row, page, length);
        browser.receives(channel, received, chunkBytes);
        browser.finishes(channel);
        const std::string entries = entriesOf(page);
        closes(page);
        return entries;
    }

    SettingsTree settings;
    TopWindow window;
    Browser browser{{.debuggerPresent = false}};
};

TEST_F(Capture, EveryKindOfBody) {
    for (const Row& row : kRows)
        for (const std::size_t length : {row.body.size(), std::size_t{0}})
            EXPECT_EQ(captures(row, row.body, length, 7), row.entries)
                << mediaKindName(row.kind) << ", " << length;
}

TEST_F(Capture, StopsAtTheCapOfItsKind) {
    for (const Row& row : kRows) {
        std::size_t cap = mediaKindCapBytes(row.kind);
        if (cap == 0) continue;
        if (row.kind == MediaKind::linkText) --cap;
        auto& page = opensPage();
        auto& channel = answers(row, page, 0);
        browser.receives(channel, std::string(cap, ' '), 65536);
        EXPECT_TRUE(browser.wantsMore(channel)) << mediaKindName(row.kind);
        browser.receives(channel, "x");
        EXPECT_FALSE(browser.wantsMore(channel)) << mediaKindName(row.kind);
        closes(page);
    }
}

TEST_F(Capture, LosesNothingButItsEntriesToAFault) {
    constexpr HookedImport kMemory[] = {{"malloc"}};
    const ImportHook hook(browser, kMemory);
    for (const Row& row : kRows) {
        bool reached = true;
        std::uint32_t n = 0;
        for (; reached; ++n) {
            auto& page = opensPage();
            // The way to a button, which takes the longest, is walked once.
            if (row.kind != MediaKind::hls) page.nativeWindow = 0;
            auto& channel = answers(row, page, row.body.size());
            browser.faults().failNth(n + 1);
            browser.receives(channel, row.body, 100);
            browser.finishes(channel);
            reached = browser.faults().reached();
            const std::string operation = browser.faults().failedOperation();
            browser.faults().none();
            const std::string entries = entriesOf(page);
            EXPECT_TRUE(reached || page.nativeWindow == 0 || entries == row.entries) << entries;
            closes(page);
            ASSERT_EQ(browser.unbalanced(), "") << mediaKindName(row.kind) << ": " << operation;
        }
        EXPECT_GT(n, 10u) << mediaKindName(row.kind);
    }
}

const Row& rowOf(MediaKind kind) { return *std::ranges::find(kRows, kind, &Row::kind); }

TEST_F(Capture, ALibraryThatIsMissingMayComeLater) {
    for (const MediaKind kind : {MediaKind::dash, MediaKind::sniff}) {
        const Row& row = rowOf(kind);
        settings.set("ExePath", SettingsTree::kProgram);
        EXPECT_EQ(captures(row, row.body, row.body.size(), 0), "") << mediaKindName(kind);
        settings.setCompanions();
        EXPECT_EQ(captures(row, row.body, row.body.size(), 0), row.entries) << mediaKindName(kind);
    }
}

TEST_F(Capture, BelievesALibraryOnlyAsFarAsItMust) {
    Row cyclic = rowOf(MediaKind::dash);
    cyclic.body.insert(cyclic.body.find("<MPD") + 4, " profiles=\"cyclic\"");
    EXPECT_EQ(captures(cyclic, cyclic.body, 0, 0), cyclic.entries) << "a list without an end";
    Row broken = rowOf(MediaKind::dash);
    broken.body = "<MPD >";
    captures(broken, broken.body, 0, 0);
    using StandIn_Results_t = int();
    const auto results = exportOf<StandIn_Results_t>(GetModuleHandleA("zabvmprs64.dll"), "StandIn_Results");
    ASSERT_NE(results, nullptr);
    EXPECT_EQ(results(), 0) << "what it hands out is given back";
    Row overlong = rowOf(MediaKind::sniff);
    overlong.body.replace(0, 8, "ZABLONG!");
    EXPECT_EQ(captures(overlong, overlong.body, 0, 0), overlong.entries) << "an extension without its end";
}

TEST_F(Capture, AListenerMayEndAtAnyTime) {
    const Row& row = rowOf(MediaKind::hls);
    const std::size_t variant = row.body.find("#EXT-X-STREAM-INF:BANDWIDTH=524288");
    const std::string first = "hls2tozab://http://h.example/d/v/hd.m3u8\t720p bitrate 1024, TS\n";
    EXPECT_EQ(captures(row, row.body.substr(0, variant), row.body.size(), 0), first) << "in the middle";

    auto& page = opensPage();
    auto& channel = answers(row, page, row.body.size());
    browser.onNext("helper5.72", [&] { browser.finishes(channel); });
    browser.receives(channel, row.body);
    EXPECT_TRUE(channel.listeners.empty());
    EXPECT_EQ(entriesOf(page), row.entries) << "given up by the browser while its body is read";
    closes(page);
}

TEST_F(Capture, APageThatWentAwayGetsNoEntries) {
    const Row& row = rowOf(MediaKind::hls);
    for (const bool byEvent : {true, false}) {
        auto& page = opensPage();
        auto& channel = answers(row, page, 0);
        browser.receives(channel, row.body);
        if (byEvent)
            browser.mouse(u"unload", &page);
        else
            browser.unloads(page.attributes.at(u"zabmzcc-ext-docid"));
        browser.finishes(channel);
        EXPECT_EQ(entriesOf(page), "") << (byEvent ? "the event" : "the export");
        EXPECT_TRUE(window.buttons(true).empty());
        Browser::dropsPage(page);
    }
}

TEST_F(Capture, ThePanelsSettingsDecideWhatIsKeptAndShown) {
    settings.set("ZABBI\\Firefox\\DwnlPanel\\!ALL!", 0u);
    settings.set("DwnlPanel\\minsize\\mp3", 10u).set("DwnlPanel\\minsize\\mp4", 20u);
    settings.set("ZABBI\\Firefox\\DwnlPanel\\FLV", 1u).set("ZABBI\\Firefox\\DwnlPanel\\DonlCaptWP", 1u);
    const struct {
        const char* name;
        std::size_t size;
        const char* entries;
        const char* why;
    } rows[] = {
        {"a.flv", 9, "http://h.example/a.flv\ta.flv, 9 Bytes\n", "a type that the user set"},
        {"a.mp3", 9, "", "below the least size of its type"},
        {"a.mp3", 10, "", "not below it, but captured without a panel"},
        {"a.xyz", 9, "", "no type of media"},
    };
    for (const auto& row : rows) {
        auto& page = opensPage();
        auto& channel = browser.requests(
            {.url = std::string("http://h.example/") + row.name, .loadFlags = kEmbedded, .page = &page});
        browser.answers(
            channel, 200,
            {{"Content-Type", "application/octet-stream"}, {"Content-Length", std::to_string(row.size)}});
        browser.finishes(channel);
        EXPECT_EQ(entriesOf(page), row.entries) << row.why;
        closes(page);
    }
}

TEST_F(Capture, AChosenEntryCarriesWhatItsStreamNeeds) {
    Manager manager;
    settings.setCompanions();
    browser.cookies = {{"ofHost", "1", "h.example"}, {"other", "1", "other.example"}};
    const Row& row = rowOf(MediaKind::hls);
    auto& page = opensPage();
    auto& channel = browser.requests({.url = row.url,
                                      .headers = {{"Referer", "http://site.example/frame"},
                                                  {"User-Agent", "Stand-in/52.9"},
                                                  {"Cookie", "ofRequest=1"}},
                                      .loadFlags = kEmbedded,
                                      .page = &page});
    browser.answers(channel, 200, {{"Content-Type", row.type}});
    browser.receives(channel, row.body);
    browser.finishes(channel);
    const auto buttons = window.buttons();
    ASSERT_EQ(buttons.size(), 1u);
    meanwhile([&] { return opensMenu(buttons.front()); });
    EXPECT_TRUE(meanwhile([] { return choosesItem(0); }));
    const auto told = meanwhile([&] { return manager.received(0); });
    EXPECT_EQ(told["url"], "hls2tozab://http://h.example/d/v/hd.m3u8");
    EXPECT_EQ(told["referrer"], "http://site.example/frame");
    EXPECT_EQ(told["cookies"], "ofHost=1") << "those that the browser has for the playlist";
    EXPECT_EQ(told["extraData"][0], "Stand-in/52.9");
    EXPECT_EQ(told["extraData"][7], page.url);
    EXPECT_EQ(told["extraData"][12], "http://h.example/d/a.m3u8") << "the playlist of its sound";
    closes(page);
}

TEST_F(Capture, TwoHundredListenersAtTheirCapsHoldNoMoreThanTheirBodies) {
    constexpr std::size_t kListeners = 200;
    auto& page = opensPage();
    std::uint64_t left = 0;
    for (int round = 0; round < 2; ++round) {
        const std::uint64_t start = privateBytes(), inUse = heapBytesInUse();
        std::uint64_t caps = 0;
        std::vector<Channel*> channels;
        for (std::size_t n = 0; channels.size() < kListeners; ++n) {
            const Row& row = kRows[n % std::size(kRows)];
            const std::uint32_t cap = mediaKindCapBytes(row.kind);
            if (cap == 0) continue;
            channels.push_back(&answers(row, page, 0));
            browser.receives(*channels.back(), std::string(cap, ' '), 14'000);
            caps += cap;
        }
        const std::uint64_t held = privateBytes() - start;
        for (Channel* channel : channels) browser.finishes(*channel);
        browser.sweeps();
        left = heapBytesInUse() - inUse;
        std::printf("200 listeners hold %llu bytes for bodies of %llu, and leave %lld\n", held, caps,
                    static_cast<long long>(left));
        EXPECT_LT(held, caps + caps / 10);
    }
    EXPECT_LT(static_cast<std::int64_t>(left), 1 << 20) << "the records of 200 requests";
    closes(page);
}

}  // namespace
}  // namespace zab::testbed
