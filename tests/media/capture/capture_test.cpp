#include <gtest/gtest.h>

#include <random>

#include "binding/text.h"
#include "media/capture/capture_check.h"
#include "media/capture/handlers/handlers.h"
#include "media/parsers/generated.h"

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;
using zab::MediaKind;
using zabtest::captureWhole;
using zabtest::contextFor;
using zabtest::shown;

struct Row {
    std::string_view url, body;
    std::string entries;
    const char* why;
};

template <std::size_t kRows>
void expectEntries(MediaKind kind, const Row (&rows)[kRows], std::string_view title = "") {
    for (const Row& row : rows) {
        EXPECT_EQ(captureWhole(kind, contextFor(row.url), row.body, title), row.entries) << row.why;
    }
}

TEST(CaptureHls, OffersVariantsOrTheOnePlaylist) {
    constexpr std::string_view kUrl = "http://h/d/list.m3u8?k#f";
    const Row rows[] = {
        {kUrl, "#EXT-X-STREAM-INF:BANDWIDTH=1048576,RESOLUTION=1280x720\nv/a.m3u8\n",
         "hlstozab://http://h/d/v/a.m3u8 | 720p bitrate  1024 | ts | height 720 | bitrate 1048576\n",
         "two blanks before the number; a relative address is resolved"},
        {kUrl, "#EXT-X-STREAM-INF:BANDWIDTH=0\n/x/low.v1.m3u8?q\n",
         "hlstozab://http://h/x/low.v1.m3u8?q | low.v1 | ts\n",
         "no rate, nothing appended; named by its file without a height"},
        {kUrl,
         "#EXT-X-MEDIA:GROUP-ID=\"g\",URI=\"a.m3u8\"\n#EXT-X-STREAM-INF:AUDIO=\"g\",RESOLUTION=1x72y\nv\n",
         "hls2tozab://http://h/d/v | 72yp | ts | second http://h/d/a.m3u8 | height 72\n",
         "its own audio is the second address; the height's text as it stands"},
        {kUrl, "#EXT-X-MEDIA:GROUP-ID=\"g\"\n#EXT-X-STREAM-INF:AUDIO=\"g\"\nv\n",
         "hlstozab://http://h/d/v | v | ts\n", "audio that is in the variant itself"},
        {kUrl, "#EXT-X-STREAM-INF:BANDWIDTH=99999999999\nv.m3u8\n",
         "hlstozab://http://h/d/v.m3u8 | v bitrate  2097151 | ts | bitrate 2147483647\n", "the largest rate"},
        {kUrl, "#EXT-X-MAP:URI=\"i.mp4\"\n#EXTINF:9.6\na.m4s\n#EXTINF:9.6\nb.m4s\n#EXT-X-ENDLIST\n",
         "hlstozab://http://h/d/list.m3u8?k#f | list | mp4 | duration 19\n",
         "a media playlist, its whole total cut once"},
        {kUrl, "#EXT-X-VERSION:3\n#EXTINF:9.6\na.ts\n", "hlstozab://http://h/d/list.m3u8?k#f | list | ts\n",
         "a window of a live one has no length"},
        {kUrl, "#EXTM3U\n#EXTINF:-1,Radio\nhttp://radio/live.mp3\n",
         "http://radio/live.mp3 | live.mp3 | mp3 | audio\n", "a radio list is a list of links"},
        {"https://strm.yandex.ru/d/l.m3u8", "#EXT-X-STREAM-INF:X=1\nv/a.m3u8\n",
         "hlstozab://v/a.m3u8 | a | ts\n", "addresses of this host are taken as they stand"},
        {kUrl, "#EXTM3U\n", "", "no tag of either kind"},
    };
    expectEntries(MediaKind::hls, rows);
}

TEST(CaptureHds, OffersOneEntryForEachHeight) {
    constexpr std::string_view kUrl = "http://h/d/m.f4m?a";
    const Row rows[] = {
        {kUrl,
         " \n<?xml?>< MANIFEST><duration>9.9</duration><bootstrapInfo> B=</bootstrapInfo>"
         "<media url='v/1' height='720' bitrate='1500k'><metadata>M </metadata></media><media url='/2' "
         "height='360'/>",
         "dhstozab://http://h/d/m.f4m?a | 720p bitrate 1500k | flv | second http://h/d/v/1 | extra "
         "<bootstrapInfo> B=</bootstrapInfo><metadata>M </metadata> | duration 9 | height 720 | bitrate "
         "1500000\n"
         "dhstozab://http://h/d/m.f4m?a | 360p | flv | second http://h/2 | extra "
         "<bootstrapInfo> B=</bootstrapInfo><metadata></metadata> | duration 9 | height 360\n",
         "raw contents, in order; no rate, nothing appended"},
        {kUrl, "<manifest><drmX/><bootstrapInfo>B</bootstrapInfo><media url='v' height='1'/>", "", "protected"},
        {kUrl, "x<manifest><bootstrapInfo>B</bootstrapInfo><media url='v' height='1'/>", "",
         "begins with no tag"},
        {kUrl, "<m><bootstrapInfo>B</bootstrapInfo><media url='v' height='1'/>", "", "no manifest element"},
    };
    expectEntries(MediaKind::hds, rows);
}

TEST(CaptureSites, OffersWholeFiles) {
    const Row vimeo[] = {
        {"http://h/",
         "<title>A  B</title>\"progressive\":[{url:http://v/1,quality:720p,mime:video/mp4},"
         "{url:http://v/2,quality:hd7p,mime:video/mp4}]",
         "http://v/1 | A  B 720p | mp4 | height 720\nhttp://v/2 | A  B hd7p | mp4\n", "title and quality raw"},
        {"http://h/", "\"progressive\":[{url:http://v/1,quality:p,mime:video/mp4}]", "http://v/1 | p | mp4\n",
         "no title, no blank"},
    };
    expectEntries(MediaKind::vimeoPlayer, vimeo);
    const Row facebook[] = {
        {"http://h/", "videoData: hd_src:'http:\\/\\/f\\/h' sd_src:'http://f/s'",
         "http://f/h | Page HD | mp4\nhttp://f/s | Page | mp4\n", "the better one first"},
        {"http://h/", "videoData: </html> hd_src:'http://f/h'", "", "nothing counts behind the page's end"},
        {"http://h/", "videoData: sd_src:''", "", "an empty address is none"},
    };
    expectEntries(MediaKind::facebook, facebook, "Page");
}

TEST(CaptureLinkText, EndsAnAddressWhereItsTextEnds) {
    const Row rows[] = {
        {"http://h/", "a https://h/x%20y.MP3?q=1.mp4. b",
         "https://h/x%20y.MP3?q=1.mp4. | x y.MP3 | mp3 | audio\n",
         "a blank ends it, a final dot stays; extension and name come from the path"},
        {"http://h/", "xHTTP://h/a[1](b{c)]d.flv)", "HTTP://h/a[1](b{c) | a[1](b{c) | \n",
         "a bracket that was not opened ends it, each kind counted alone"},
        {"http://h/", "http://\"ftp://a'mms://b<c", "ftp://a | Page | \nmms://b | Page | \n",
         "quotes and angle brackets end; one character at least; named by the page"},
        {"http://h/", "http://a/http://b/c", "http://a/http://b/c | c | \n",
         "the search goes on behind an address"},
        {"http://h/", "http://a/x\0http://b/y"sv, "http://a/x | x | \n", "text ends at a NUL"},
        {"http://h/", "http://a/x\x7Fhttp://a/%00y http://a/utf-8%27%27z",
         "http://a/x | x | \nhttp://a/%00y | Page | \n"
         "http://a/utf-8%27%27z | z | \n",
         "a control character ends it; a name ends at a NUL and loses its mark"},
    };
    expectEntries(MediaKind::linkText, rows, "Page");
}

TEST(CapturePage, OffersWhatTheMarkupPlays) {
    const Row rows[] = {
        {"http://h/d/p.html",
         "<base href='/b/'><img src=x.mp4><video src='a.mp4?range=1-2'></video><source src=b.txt>"
         "<object data=c.Mp3></object>",
         "http://h/b/a.mp4? | a.mp4 | mp4\nhttp://h/b/c.Mp3 | c.Mp3 | mp3 | audio\n",
         "playable elements with a media extension, without range, against the base"},
    };
    expectEntries(MediaKind::page, rows);
}

TEST(CaptureFragmentManifest, FillsTheTemplate) {
    constexpr std::string_view kUrl = "http://h/d/m.json";
    const Row rows[] = {
        {kUrl,
         R"({"template" : "v\/$fragment$/\u00e4$fragment$","fragments": 12.7,"height":720,"duration":9.9})",
         "http://h/d/v/1/\u00e41 | 720p | mp4 | extra "
         "<fragments>12</fragments><template>http://h/d/v/$fragment$/"
         "\u00e4$fragment$</template> | duration 9 | height 720\n",
         "escapes undone, every placeholder filled in the link alone, fractions cut"},
        {kUrl, R"(["fragments","fragments":3,"template":"/a%20$fragment$.x","height":"720"])",
         "http://h/a%201.x | a 1.x | mp4 | extra <fragments>3</fragments><template>http://h/a%20$fragment$.x"
         "</template>\n",
         "the first place with a colon; a quoted number is none; named by its file"},
        {kUrl, R"({"fragments":0,"template":"$fragment$"})", "", "no fragments"},
        {kUrl, R"({"fragments":1,"template":"fragment"})", "", "no placeholder"},
        {kUrl, R"({"fragments":1,"template":"$fragment$)", "", "an open string is none"},
    };
    expectEntries(MediaKind::fragmentManifest, rows);
}

/// An F4F box, and an FLV tag of three bytes in it.
std::string box(std::string_view type, std::string_view payload) {
    return "\0\0\0"s + static_cast<char>(8 + payload.size()) + std::string(type).append(payload);
}
std::string tag(char type) { return type + "\0\0\3\0\0\0\0\0\0\0abc\0\0\0\x0E"s; }

TEST(CaptureHdsFragment, OffersStreamsThatCanBePlayed) {
    const std::string link = "dhs2tozab://http://h/d/v%201_Seg%ld-Frag%ld?q | v 1 | flv\n";
    const struct {
        std::string body;
        bool offered;
        const char* why;
    } rows[] = {
        {box("afra", "x") + box("mdat", tag(9) + tag(8)), true, "plain tags"},
        {box("mdat", tag(9) + tag(0x29)), false, "a later tag is filtered"},
        {box("mdat", tag(9)) + box("mdat", tag(0x29)), false, "in a later box"},
        {"\0\0\0\1mdat\0\0\0\0\0\0\0\x22"s + tag(9) + box("free", tag(0x29)), true,
         "a 64-bit size ends the tags"},
        {"\0\0\0\0mdat"s + tag(9), true, "size 0 runs to the end"},
        {"\0\0\0\7free"s + box("mdat", tag(9)), false, "a size below its header ends the walk"},
        {box("mdat", tag(9).substr(0, 10)), false, "no whole tag header"},
        {box("free", tag(9)), false, "no media data"},
        {box("mdat", tag(9).substr(0, 11)), true, "a tag's header alone"},
    };
    for (const auto& row : rows) {
        const auto context =
            contextFor("http://h/d/v%201_Seg1-Frag22?q", static_cast<std::int64_t>(row.body.size()));
        EXPECT_EQ(captureWhole(MediaKind::hdsFragment, context, row.body), row.offered ? link : "") << row.why;
    }
}

std::string stream(int itag) {
    return "url=http%3A%2F%2Fg.example%2Fvideoplayback%3Fid%3D1%26itag%3D" + std::to_string(itag) +
           "\\u0026itag=" + std::to_string(itag);
}

TEST(CaptureYouTube, OffersTheCatalogue) {
    const std::string body = "\"url_encoded_fmt_stream_map\":\"" + stream(22) + "," + stream(43) +
                             "\",\"adaptive_fmts\":\"" + stream(137) + "," + stream(136) + "," + stream(140) +
                             "\"";
    const std::string link = "http://g.example/videoplayback?id=1&itag=";
    zab::CaptureContext context = contextFor("http://www.youtube.com/watch?v=1");
    context.youtubePairing = 2;
    EXPECT_EQ(captureWhole(MediaKind::youtubeWatchPage, context, body),
              "yta3tozab://" + link + "22 | 720p HD MP4 | mp4\nyta3tozab://" + link +
                  "43 | 360p WEBM | webm\n" + "yta3tozab://" + link + "137 | 1080p HD MP4 | mp4 | second " +
                  link + "140\n")
        << "136 shows what 22 shows, 140 is sound";
    EXPECT_EQ(captureWhole(MediaKind::youtubeWatchPage, context,
                           "\"url_encoded_fmt_stream_map\":\"" + stream(22) + "\",\"adaptive_fmts\":\"" +
                               stream(137) + "\""),
              "yta3tozab://" + link + "22 | 720p HD MP4 | mp4\n")
        << "without sound to go with it a picture is nothing";
}

TEST(CaptureYouTube, OffersAStreamThatNoCatalogueKnows) {
    const auto itself = [](std::string_view url, bool withCatalogue) {
        zab::LocalPage page;
        if (withCatalogue) {
            auto catalogue = std::make_unique<zab::CYoutubeParser>();
            catalogue->addEntry(u"http://g.googlevideo.com/videoplayback?id=1&itag=18", 18, false);
            page.change([&](zab::OfferedMedia& media) { media.addCatalogue(std::move(catalogue)); });
        }
        const auto context = contextFor(url);
        zab::CaptureRun run(context, page);
        zab::offerPlayback(run);
        return shown(run.takeEntries());
    };
    constexpr std::string_view kUrl = "http://g.googlevideo.com/videoplayback?id=1&itag=22&range=1-2";
    EXPECT_EQ(itself(kUrl, false),
              "ytatozab://http://g.googlevideo.com/videoplayback?id=1&itag=22 | 720p HD MP4 | mp4\n");
    EXPECT_EQ(itself(kUrl, true), "") << "the video is known";
    EXPECT_EQ(itself("http://g.googlevideo.com/videoplayback?id=2&itag=137", false), "")
        << "picture without sound";
}

std::string representation(int id, std::string_view base, std::string_view media) {
    return "<Representation id=\"" + std::to_string(id) + "\"><BaseURL>" + std::string(base) +
           "</BaseURL><SegmentList><SegmentURL media=\"" + std::string(media) +
           "\"/></SegmentList></Representation>";
}

TEST(CaptureYouTubeDash, PairsAndNumbersStreams) {
    const Row rows[] = {
        {"http://m/", "", "", "no record"},
    };
    expectEntries(MediaKind::youtubeDash, rows);
    const auto entries = [](std::string_view video, std::string_view videoMedia, std::string_view audio,
                            std::string_view audioMedia) {
        return captureWhole(MediaKind::youtubeDash, contextFor("http://m/"),
                            representation(247, video, videoMedia) + representation(140, audio, audioMedia));
    };
    EXPECT_EQ(entries("http://v/a", "x/5", "http://s/b", ""),
              "ytatozab://http://v/a | 720p HD MKV | MKV | second http://s/b\n")
        << "a number without sq/ is no sequence";
    EXPECT_EQ(entries("http://v/a/?q", "sq/007/x", "http://s/lang/de/b?lang=fr", ""),
              "yta5tozab://http://v/a/start_seq/007/?q,au=http://s/lang/de/b/start_seq/007?lang=fr,asl=de | "
              "720p HD MKV | MKV\n")
        << "the sound takes the picture's number; digits as written; the path's language first";
    EXPECT_EQ(entries("http://v/start_seq/1/a", "nosq/1/sq/8", "http://s/start_seq/?lang=fr", "sq/9"),
              "yta5tozab://http://v/start_seq/8/a,au=http://s/start_seq/9?lang=fr,asl=fr | 720p HD MKV | MKV\n")
        << "an existing value is replaced; sq/ begins a segment";
}

TEST(CaptureItself, OffersAMediaFile) {
    const auto itself = [](std::string_view url, std::string_view fileName, std::string_view type,
                           std::string_view extension) {
        zab::LocalPage page;
        zab::CaptureContext context = contextFor(url, 7);
        context.fileName = fileName;
        context.contentType = type;
        context.extension = extension;
        zab::CaptureRun run(context, page);
        zab::offerOwnEntry(run);
        return shown(run.takeEntries());
    };
    EXPECT_EQ(itself("http://h/a%C3%A4.MP3?range=1&x#f", "", "", "MP3"),
              "http://h/a%C3%A4.MP3?x#f | a\u00e4.MP3 | mp3 | audio | size 7\n");
    EXPECT_EQ(itself("http://h/a.FLV", "utf-8''n.mp4", "video/mp4", "mp4"),
              "http://h/a.FLV | n.mp4 | flv | size 7\n");
    EXPECT_EQ(itself("http://h/a.x", "", "", "MP3"), "http://h/a.x | a.x | mp3 | audio | size 7\n")
        << "audio by the extension of the response";
}

class Library final : public zab::CompanionLibraries {
  public:
    std::optional<zab::DashStreams> dashStreams(std::string_view, std::string_view) override { return streams; }
    zab::SniffedContent sniff(std::string_view) override { return sniffed; }
    zab::DashStreams streams;
    zab::SniffedContent sniffed{zab::SniffedContent::Verdict::recognised, "M4A", 0, 5, 1, 2, 3};
};

TEST(CaptureWithCompanions, DescribesWhatTheyTell) {
    Library library;
    zab::CaptureContext context = contextFor("http://h/m.mpd");
    context.companions = &library;
    library.streams.audio = {{"a", 900, 1024, 0}};
    EXPECT_EQ(captureWhole(MediaKind::dash, context, "<MPD></MPD>"),
              "mpdatozab://http://h/m.mpd&selected_id=a | bitrate 1kbps | mp4 | audio | bitrate 1024\n");
    library.streams.video = {{"v", 720, 0, 5}, {"w", 719, 2047, 0}};
    EXPECT_EQ(
        captureWhole(MediaKind::dash, context, "<mpd>"),
        "mpdtozab://http://h/m.mpd&selected_id=v | 5 720p HD | mp4 | size 5 | height 720\n"
        "mpdtozab://http://h/m.mpd&selected_id=w | 719p bitrate 1kbps | mp4 | height 719 | bitrate 2047\n");
    EXPECT_EQ(captureWhole(MediaKind::sniff, context, "x"),
              "http://h/m.mpd | m.mpd | m4a | audio | duration 5 | width 1 | height 2 | bitrate 3\n");

    library.sniffed.extension = "MOV";
    context.contentLength = 1;
    EXPECT_EQ(captureWhole(MediaKind::sniff, context, "x"),
              "http://h/m.mpd | m.mpd | mov | size 1 | duration 5 | width 1 | height 2 | bitrate 3\n")
        << "what neither the library nor the file itself tells: the response's length, the library's height";
    library.sniffed.size = 7;
    EXPECT_NE(captureWhole(MediaKind::sniff, context, "x").find("size 7"), std::string::npos);
    context.contentLength = 0;

    library.sniffed.extension = "XML";
    constexpr std::string_view kHds = "<manifest xmlns='http://ns.adobe.com/f4m/1.0'>";
    const std::string media = "<bootstrapInfo>B</bootstrapInfo><media url='v' height='1'/>";
    const auto sniffed = [&](std::string_view url, const std::string& body) {
        context.url = url;
        return captureWhole(MediaKind::sniff, context, body);
    };
    EXPECT_TRUE(
        sniffed("http://h/m", std::string(kHds) + media).starts_with("dhstozab://http://h/m | 1p | flv"));
    const std::string late = std::string(87 - kHds.size() + 8, ' ') + std::string(kHds) + media;
    EXPECT_EQ(sniffed("http://h/m", late), "") << "its namespace ends behind the first 87 bytes";
    const std::string dash = representation(247, "http://v/a", "") + representation(140, "http://s/b", "");
    EXPECT_EQ(sniffed("http://manifest.googlevideo.com/api/manifest/x", dash),
              "ytatozab://http://v/a | 720p HD MKV | MKV | second http://s/b\n");
    EXPECT_EQ(sniffed("http://h/m", dash), "") << "XML of another kind is no entry";
}

TEST(OfferedMedia, HoldsEachStreamOnceAndAHundred) {
    zab::OfferedMedia page;
    zab::MediaEntry entry;
    entry.link = "hlstozab://";
    page.offer(entry);
    EXPECT_TRUE(page.entries().empty()) << "no address behind the scheme";
    for (int i = 0; i < 102; ++i) {
        entry.link = "http://h/" + std::to_string(i % 101);
        entry.size = i == 101 ? 5 : 0;
        page.offer(entry);
    }
    EXPECT_EQ(page.entries().size(), 100u) << "a full page drops the new one";
    EXPECT_EQ(page.entries().front().size, 5u) << "and still learns about those that it holds";
    entry.size = 6;
    page.offer(entry);
    EXPECT_EQ(page.entries().front().size, 5u) << "what is known stays";

    zab::OfferedMedia large;
    entry.page.url.assign(1 << 20, 'u');
    for (int i = 0; i < 50; ++i) {
        entry.link = "http://h/" + std::to_string(i);
        large.offer(entry);
    }
    EXPECT_EQ(large.entries().size(), 15u) << "16 MiB of texts hold no 16 addresses of 1 MiB with their links";
    zab::MediaEntry bare = entry;
    bare.isBarePlaylist = true;
    bare.page.url.clear();
    bare.link = "hlstozab://http://h/v";
    large.offer(bare);
    large.learnFromPlaylist("http://h/v", 1, "mp4");
    entry.link = "hls2tozab://http://h/v";
    large.offer(entry);
    EXPECT_TRUE(large.entries().back().isBarePlaylist)
        << "a film that takes the place of its playlist has no more room";
    entry.link = "http://h/more";
    large.offer(entry);
    EXPECT_EQ(large.entries().size(), 16u) << "nor has what comes then";
    (void)large.takeEntries();
    large.offer(entry);
    EXPECT_EQ(large.entries().size(), 1u) << "and room again for others";
}

TEST(OfferedMedia, ForgetsWhatItLearntFirst) {
    using Page = zab::OfferedMedia;
    Page page;
    for (std::size_t i = 0; i <= Page::kMostCatalogues; ++i) {
        EXPECT_EQ(page.catalogues().size(), i);
        page.addCatalogue(std::make_unique<zab::CYoutubeParser>(i == 1 ? u"second" : u""));
    }
    EXPECT_EQ(page.catalogues().size(), Page::kMostCatalogues);
    EXPECT_TRUE(page.catalogues().front()->pageUrl() == u"second");

    zab::MediaEntry entry;
    entry.link = "http://h/same";
    for (const bool told : {false, true}) {
        if (told) entry.size = entry.duration = entry.width = entry.height = 3;
        page.offer(entry);
    }
    EXPECT_TRUE(shown(page.entries()).ends_with("size 3 | duration 3 | width 3 | height 3\n"));
    for (std::string zab::MediaEntry::*part : {&zab::MediaEntry::secondUrl, &zab::MediaEntry::extra}) {
        entry.*part = "x";
        page.offer(entry);
    }
    EXPECT_EQ(page.entries().size(), 3u) << "another stream of the same address";
}

TEST(BodyCollector, TakesABodyAsFarAsItCounts) {
    const std::string link = "http://a/x", playlist = "#EXT-X-VERSION:1\n#EXTINF:1\na\n",
                      long2Mb(2'000'000, '\n');
    const struct {
        MediaKind kind;
        std::int64_t length;
        std::string body;
        bool offers;
        const char* why;
    } rows[] = {
        {MediaKind::linkText, 10, link + "y", true, "nothing is read behind a known length"},
        {MediaKind::linkText, 11, link, false, "a known length that is not reached"},
        {MediaKind::linkText, 0, link + std::string(2037, ' '), true, "a list of 2,047 bytes"},
        {MediaKind::linkText, 0, link + std::string(2038, ' '), false, "and one byte too many"},
        {MediaKind::linkText, zab::BodyCollector::kMostKnownBytes + 1, link, false, "claims too much"},
        {MediaKind::facebook, 0, "videoData:hd_src:'http://f/h'" + long2Mb, true,
         "a page that is cut still counts"},
        {MediaKind::hls, 99, playlist, true, "a playlist counts although it ended early"},
        {MediaKind::hls, 0, playlist + long2Mb, false, "cut without its end"},
        {MediaKind::hls, 0, playlist + "#EXT-X-ENDLIST" + long2Mb, true, "cut behind its end"},
        {MediaKind::page, 5, "<video src=a.mp4>", true, "a page is read whatever its length"},
        {MediaKind::page, 0, std::string(20'480 - 17, ' ') + "<video src=a.mp4>", true,
         "its first 20,480 bytes"},
        {MediaKind::page, 0, std::string(20'480 - 16, ' ') + "<video src=a.mp4>", false, "and no more"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(!captureWhole(row.kind, contextFor("http://h/p", row.length), row.body).empty(), row.offers)
            << row.why;
}

// Chunks are how a network felt, and nothing of them may show: not where something ends in the middle of one.
TEST(Capture, IsTheSameWhereverABodyIsCut) {
    const struct {
        MediaKind kind;
        std::string body;
        const char* entries;
    } rows[] = {
        {MediaKind::facebook, "videoData: sd_src:'http://f/s' </html> hd_src:'http://f/h'",
         "http://f/s |  | mp4\n"},
        {MediaKind::facebook, "videoData: sd_src:'http://f/s' </htm</html>hd_src:'http://f/h'",
         "http://f/s |  | mp4\n"},
        {MediaKind::page, "<video src=a.mp4></video></html><video src=b.mp4>",
         "http://h/d/a.mp4 | a.mp4 | mp4\nhttp://h/d/b.mp4 | b.mp4 | mp4\n"},
        {MediaKind::linkText, "http://a/b.mp3 http://a/c.mp3",
         "http://a/b.mp3 | b.mp3 | mp3 | audio\n"
         "http://a/c.mp3 | c.mp3 | mp3 | audio\n"},
        {MediaKind::hls, "#EXTINF:9,\ns.ts\n#EXT-X-ENDLIST\n#EXTINF:8,\nt.ts\n",
         "hlstozab://http://h/d/vSeg1-Frag1 | vSeg1-Frag1 | ts | duration 17\n"},
        {MediaKind::hdsFragment, box("afra", "x") + box("mdat", tag(9) + tag(8)) + box("mdat", tag(9)),
         "dhs2tozab://http://h/d/vSeg%ld-Frag%ld | v | flv\n"},
        {MediaKind::hdsFragment, box("afra", "x") + box("mdat", tag(9)) + box("mdat", tag(9) + tag(0x29)), ""},
    };
    for (const auto& row : rows) {
        for (std::size_t first = 1; first <= row.body.size(); ++first) {
            for (const std::size_t then : {std::size_t{1}, row.body.size()}) {
                std::size_t size = 0;
                const auto next = [&] { return std::exchange(size, then) == 0 ? first : then; };
                ASSERT_EQ(zabtest::capture(row.kind, contextFor("http://h/d/vSeg1-Frag1"), row.body, next),
                          row.entries)
                    << zab::mediaKindName(row.kind) << " cut behind " << first;
            }
        }
    }
}

TEST(Capture, NeverDependsOnTheChunks) {
    const auto kPieces = zabtest::pieces(
        "#EXTINF:9,\ns.ts\n~#EXT-X-STREAM-INF:BANDWIDTH=9000,RESOLUTION=1x720\nv.m3u8\n~#EXT-X-ENDLIST\n~"
        "<manifest><bootstrapInfo>B</bootstrapInfo>~<media url='v' height='720'/>~</html>~http://a/b.mp3 ~"
        "<video src=a.mp4>~\"fragments\":3,~\"template\":\"$fragment$\",~<title>T</title>~"
        "\"progressive\":[{url:u,quality:7p,mime:video/mp4}]~videoData:~hd_src:'http://f/1'~"
        "\"url_encoded_fmt_stream_map\":\"itag=22\\u0026url=http://g/videoplayback?itag=22\"~"
        "url_encoded_fmt_stream_map=url%3Dhttp%253A//g/videoplayback%253Fitag%253D18&~"
        "<Representation id='137'><BaseURL>b</BaseURL><SegmentList><S "
        "media='sq/1'/></SegmentList></Representation>~"
        "<Representation id='140'><BaseURL>a</BaseURL><SegmentList>x</SegmentList></Representation>~"
        "\0\0\0\0mdat~\t\0\0\0\0\0\0\0\0\0\0\0\0\0\x0B~\0"sv);
    zabtest::Random random(20261124);
    int offered = 0;
    for (int round = 0; round < 400; ++round) {
        const std::string body = zabtest::strungTogether(random, kPieces, 1 + random() % 12);
        const std::size_t largest = 1 + random() % 40;
        const auto length = static_cast<std::int64_t>(round % 3 == 0 ? 0 : body.size() - round % 3 + 1);
        const auto context = contextFor("http://h/d/vSeg1-Frag1", length);
        for (std::size_t kind = 1; kind < zab::kMediaKindCount; ++kind) {
            const auto one = static_cast<MediaKind>(kind);
            const std::string whole = captureWhole(one, context, body);
            const auto cut = [&] { return 1 + random() % largest; };
            ASSERT_EQ(zabtest::capture(one, context, body, cut), whole) << zab::mediaKindName(one) << '\n'
                                                                        << body;
            if (!whole.empty()) ++offered;
        }
    }
    EXPECT_GT(offered, 400) << "the bodies are worth the comparison";
}

}  // namespace
