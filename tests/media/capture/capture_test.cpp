#include <gtest/gtest.h>

#include <algorithm>

#include "binding/utf.h"
#include "media/capture/capture_check.h"
#include "media/capture/handlers/handlers.h"
#include "page/media_pages.h"

namespace {

using namespace std::string_literals;
using zab::BodyCollector;
using zab::MediaKind;
using zabtest::captureWhole;
using zabtest::contextFor;
using zabtest::shown;

std::string representation(int id, std::string_view base, std::string_view media) {
    return "<Representation id=\"" + std::to_string(id) + "\"><BaseURL>" + std::string(base) +
           "</BaseURL><SegmentList><SegmentURL media=\"" + std::string(media) +
           "\"/></SegmentList></Representation>";
}

std::string stream(int itag) {
    return "url=http%3A%2F%2Fg.example%2Fvideoplayback%3Fid%3D1%26itag%3D" + std::to_string(itag) +
           "\\u0026itag=" + std::to_string(itag);
}
std::string watchPage(const std::string& whole, const std::string& adaptive) {
    return "\"url_encoded_fmt_stream_map\":\"" + whole + "\",\"adaptive_fmts\":\"" + adaptive + "\"";
}

/// A box (of F4F or MP4), and an FLV tag of three bytes in it.
std::string box(std::string_view type, std::string_view payload) {
    return "\0\0\0"s + static_cast<char>(8 + payload.size()) + std::string(type).append(payload);
}
std::string tag(char type) { return type + "\0\0\3\0\0\0\0\0\0\0abc\0\0\0\x0E"s; }

/// One rendition of an HDS manifest, and what its entry says of it.
const std::string kMedia = "<bootstrapInfo>B</bootstrapInfo><media url='v' height='1'/>",
                  kMediaExtra = " | extra <bootstrapInfo>B</bootstrapInfo><metadata></metadata> | height 1\n";

constexpr const char* kUrl = "http://h/d/v_Seg1-Frag2?q";
const std::string kSelf = "hlstozab://http://h/d/v_Seg1-Frag2?q | v_Seg1-Frag2 | ",
                  kFragments = "dhs2tozab://http://h/d/v_Seg%ld-Frag%ld?q | v | flv\n",
                  kPlayback = "http://g.example/videoplayback?id=1&itag=",
                  kFilm22 = "ytatozab://" + kPlayback + "22 | 720p HD MP4 | mp4\n";

// Chunks are how a network felt, and nothing of them may show: not where something ends in the middle of one.
TEST(Capture, OffersWhatABodyDescribesWhereverItIsCut) {
    using enum zab::MediaKind;
    const struct {
        MediaKind kind;
        std::string body, entries;
        const char* why;
    } rows[] = {
        {hls, "#EXT-X-STREAM-INF:BANDWIDTH=1048576,RESOLUTION=1280x720\nv/a.m3u8\n",
         "hlstozab://http://h/d/v/a.m3u8 | 720p bitrate  1024 | ts | height 720 | bitrate 1048576\n",
         "two blanks before the number; a relative address is resolved"},
        {hls, "#EXT-X-STREAM-INF:BANDWIDTH=0\n/x/low.v1.m3u8?q\n",
         "hlstozab://http://h/x/low.v1.m3u8?q | low.v1 | ts\n", "no rate; named by its file"},
        {hls, "#EXT-X-MEDIA:GROUP-ID=\"g\",URI=\"a.m3u8\"\n#EXT-X-STREAM-INF:AUDIO=\"g\",RESOLUTION=1x72y\nv\n",
         "hls2tozab://http://h/d/v | 72yp | ts | second http://h/d/a.m3u8 | height 72\n",
         "its own audio is the second address; the height's text as it stands"},
        {hls, "#EXT-X-STREAM-INF:BANDWIDTH=99999999999\nv.m3u8\n",
         "hlstozab://http://h/d/v.m3u8 | v bitrate  2097151 | ts | bitrate 2147483647\n", "the largest rate"},
        {hls, "#EXT-X-MAP:URI=\"i.mp4\"\n#EXTINF:9.6\na.m4s\n#EXTINF:9.6\nb\n#EXT-X-ENDLIST\n",
         kSelf + "mp4 | duration 19\n", "a media playlist, its whole total cut once"},
        {hls, "#EXT-X-VERSION:3\n#EXTINF:9.6\na.ts\n", kSelf + "ts\n", "a window of a live one has no length"},
        {hls, "#EXTM3U\n#EXTINF:-1,Radio\nhttp://radio/live.mp3\n",
         "http://radio/live.mp3 | live.mp3 | mp3 | audio\n", "a radio list is a list of links"},
        {hds,
         " \n<?xml?>< MANIFEST><duration>9.9</duration><bootstrapInfo> B=</bootstrapInfo><media url='v/1' "
         "height='720' bitrate='1500k'><metadata>M </metadata></media><media url='x' height='360'/><media "
         "url='/2' height='360'/>",
         "dhstozab://http://h/d/v_Seg1-Frag2?q | 720p bitrate 1500k | flv | second http://h/d/v/1 | extra "
         "<bootstrapInfo> B=</bootstrapInfo><metadata>M </metadata> | duration 9 | height 720 | bitrate "
         "1500000\n"
         "dhstozab://http://h/d/v_Seg1-Frag2?q | 360p | flv | second http://h/2 | extra "
         "<bootstrapInfo> B=</bootstrapInfo><metadata></metadata> | duration 9 | height 360\n",
         "raw contents, in order, the last of each height; no rate, nothing appended"},
        {hds, "<manifest><baseURL> ../b\n</baseURL><duration>-9</duration>" + kMedia,
         "dhstozab://http://h/d/v_Seg1-Frag2?q | 1p | flv | second http://h/b/v" + kMediaExtra,
         "against its own base address; no time runs backwards"},
        {hds, "<manifest><drmX/>" + kMedia, "", "protected"},
        {hds, "<manifest><pv-2.0/>" + kMedia, "", "protected otherwise"},
        {hds, "x<manifest>" + kMedia, "", "begins with no tag"},
        {hds, "<x>manifest" + kMedia, "", "has the name in its text alone"},
        {vimeoPlayer,
         "<title>A  B</title>\"progressive\":[{url:http://v/1,quality:720p,mime:video/mp4},"
         "{url:http://v/2,quality:hd7p,mime:video/mp4},{url:http://v/3,quality:720q,mime:video/mp4}]",
         "http://v/1 | A  B 720p | mp4 | height 720\nhttp://v/2 | A  B hd7p | mp4\n"
         "http://v/3 | A  B 720q | mp4\n",
         "title and quality raw; a height is digits and p"},
        {linkText, "a https://h/x%20y.MP3?q=1.mp4. b", "https://h/x%20y.MP3?q=1.mp4. | x y.MP3 | mp3 | audio\n",
         "a blank ends it, a final dot stays; extension and name come from the path"},
        {linkText, "xHTTP://h/a[1](b{c)]d.flv)", "HTTP://h/a[1](b{c) | a[1](b{c) | \n",
         "a bracket that was not opened ends it, each kind counted alone"},
        {linkText, "http://\"ftp://a'mms://b<c", "ftp://a | Page | \nmms://b | Page | \n",
         "quotes and angle brackets end; one character at least; named by the page"},
        {linkText, "http://a/x\x7Fhttp://a/http://b/%00y http://a/utf-8%27%27z\0http://c/"s,
         "http://a/x | x | \nhttp://a/http://b/%00y | Page | \nhttp://a/utf-8%27%27z | z | \n",
         "a control character ends it; a name and the text end at a NUL"},
        {page,
         "<base href='/b/'><img src=x.mp4><video src='a.mp4?range=1-2'></video><source src=b.txt>"
         "<object data=c.Mp3></object>",
         "http://h/b/a.mp4? | a.mp4 | mp4\nhttp://h/b/c.Mp3 | c.Mp3 | mp3 | audio\n",
         "playable elements with a media extension, without range, against the base"},
        {fragmentManifest,
         R"({"template" : "v\/$fragment$/\u00e4$fragment$","fragments": 12.7,"height":720,"duration":9.9})",
         "http://h/d/v/1/\u00e41 | 720p | mp4 | extra <fragments>12</fragments><template>http://h/d/v/"
         "$fragment$/\u00e4$fragment$</template> | duration 9 | height 720\n",
         "escapes undone, every placeholder filled in the link alone, fractions cut"},
        {fragmentManifest, R"(["fragments","fragments":3,"template":"/a%20$fragment$.x","height":"720"])",
         "http://h/a%201.x | a 1.x | mp4 | extra <fragments>3</fragments><template>http://h/a%20$fragment$.x"
         "</template>\n",
         "the first place with a colon; a quoted number is none; named by its file"},
        {fragmentManifest, R"({"fragments":0,"template":"$fragment$"})", "", "no fragments"},
        {fragmentManifest, R"({"fragments":1,"template":"a.mp4"})", "", "no place for their numbers"},
        {fragmentManifest, R"({"fragments":1,"template":"$fragment$)", "", "an open string is none"},
        {youtubeDash,
         representation(247, "http://v/a", "x/5") + representation(248, "http://v/b", "sq/") +
             representation(140, "http://s/b", ""),
         "ytatozab://http://v/a | 720p HD MKV | MKV | second http://s/b\n"
         "ytatozab://http://v/b | 1080p HD MKV | MKV | second http://s/b\n",
         "a number without sq/ is no sequence, nor is sq/ without a number"},
        {youtubeDash,
         representation(247, "http://v/a/?q", "sq/007/x") +
             representation(140, "http://s/lang/de/b?lang=fr", ""),
         "yta5tozab://http://v/a/start_seq/007/?q,au=http://s/lang/de/b/start_seq/007?lang=fr,asl=de | "
         "720p HD MKV | MKV\n",
         "the picture's number for both, as written; the path's language first"},
        {youtubeDash,
         representation(247, "http://v/start_seq/1/a", "nosq/1/sq/8") +
             representation(140, "http://s/start_seq/?lang=fr", "sq/9"),
         "yta5tozab://http://v/start_seq/8/a,au=http://s/start_seq/9?lang=fr,asl=fr | 720p HD MKV | MKV\n",
         "an existing value is replaced; sq/ begins a segment"},
        {youtubeDash,
         representation(247, "http://v", "sq/1") + representation(140, "http://s/lang//b?lang=x", ""),
         "yta5tozab://http://v/start_seq/1,au=http://s/lang//b/start_seq/1?lang=x,asl=x | 720p HD MKV | MKV\n",
         "a language that is empty in the path"},
        {youtubeDash, representation(247, "http://v", ""), "", "a picture alone"},
        {facebook, "videoData: hd_src:'http:\\/\\/f\\/h' sd_src:'http://f/s' </htm</html>hd_src:'http://f/i'",
         "http://f/h | Page HD | mp4\nhttp://f/s | Page | mp4\n",
         "the better one first; nothing counts behind the page's end"},
        {youtubeWatchPage,
         watchPage(stream(22) + "," + stream(43), stream(137) + "," + stream(136) + "," + stream(140)),
         kFilm22 + "ytatozab://" + kPlayback + "43 | 360p WEBM | webm\nytatozab://" + kPlayback +
             "137 | 1080p HD MP4 | mp4 | second " + kPlayback + "140\n",
         "136 shows the same as 22, 140 is sound"},
        {youtubeVideoInfo, "url_encoded_fmt_stream_map=url%3Dvideoplayback%26itag%3D22",
         "ytatozab://videoplayback | 720p HD MP4 | mp4\n", "a reply"},
        {youtubeWatchPage, watchPage(stream(22) + "," + stream(140), stream(137)), kFilm22, "adaptive sound"},
        {youtubeWatchPage, watchPage(stream(5), stream(140)),
         "ytatozab://" + kPlayback + "5 | 240p FLV | flv\n", "a whole film has its sound"},
        {hdsFragment, box("afra", "") + box("mdat", tag(9) + tag(8)), kFragments, "plain tags"},
        {hdsFragment, box("mdat", tag(9) + "\1\1\1\1") + box("mdat", tag(9) + tag(0x29)), "", "filtered later"},
        {hdsFragment, "\0\0\0\1mdat\0\0\0\0\0\0\0\x22"s + tag(9) + box("free", tag(0x29)), kFragments,
         "64 bits"},
        {hdsFragment, "\0\0\0\0mdat"s + tag(9), kFragments, "size 0 runs to the end"},
        {hdsFragment, "\0\0\0\7free"s + box("mdat", tag(9)), "", "a size below its header ends the walk"},
        {hdsFragment, box("mdat", tag(9).substr(0, 10)), "", "no whole tag header"},
        {hdsFragment, box("free", tag(9)), "", "no media data"},
        {hdsFragment, box("mdat", tag(9).substr(0, 11)), kFragments, "a tag's header alone"},
    };
    for (const auto& row : rows) {
        const std::string_view body = row.body;
        for (const std::size_t length : {std::size_t{0}, body.size()}) {
            const auto context = contextFor(kUrl, static_cast<std::int64_t>(length));
            for (std::size_t first = 1; first <= body.size(); ++first) {
                for (const std::size_t then : {std::size_t{1}, body.size()}) {
                    std::size_t size = 0;
                    const auto next = [&] { return std::exchange(size, then) == 0 ? first : then; };
                    ASSERT_EQ(zabtest::capture(row.kind, context, body, next, "Page"), row.entries)
                        << row.why << ", cut behind " << first;
                }
            }
        }
    }
    zab::CaptureContext context = contextFor("https://strm.yandex.ru/l.m3u8");
    constexpr std::string_view kVariant = "#EXT-X-STREAM-INF:X=1\nv/a.m3u8\n";
    EXPECT_EQ(captureWhole(hls, context, kVariant), "hlstozab://v/a.m3u8 | a | ts\n")
        << "addresses of this host are taken as they stand";
    context.youtubePairing = 3;
    EXPECT_TRUE(captureWhole(youtubeWatchPage, context, watchPage(stream(22), "")).starts_with("yta3tozab://"));
    zab::LocalPage watched;
    zab::CaptureRun run(context, watched);
    bodyHandlerOf(youtubeWatchPage)(watchPage(stream(22), ""), run);
    EXPECT_EQ(watched.media().catalogues().size(), 1u) << "in which what the page plays is looked up";
    context.url = "http://h/_Seg1-Frag2";
    EXPECT_EQ(captureWhole(hdsFragment, context, box("mdat", tag(9)), "Page"),
              "dhs2tozab://http://h/_Seg%ld-Frag%ld | Page | flv\n");
}

TEST(CaptureItself, IsAMediaFileOrAStreamThatNoCatalogueKnows) {
    using enum zab::Outcome;
    const std::string part = "http://g.googlevideo.com/videoplayback?id=1&itag=",
                      ranged = part + "22&range=1-2",
                      offered = "ytatozab://" + part + "22 | 720p HD MP4 | mp4\n",
                      song = "http://h/a%C3%A4.MP3?x#f | a\u00e4.MP3 | mp3 | audio | size 7\n",
                      film = "http://h/a.FLV | n.mp4 | flv\n";
    const struct {
        zab::CaptureContext context;
        bool isFile;
        std::string catalogue;  // a stream that the page's holds
        bool marks;             // as one that the browser plays
        std::string entries;
        const char* why;
        std::uint32_t loadFlags = 0;
        zab::Outcome outcome = browser;
        std::uint32_t status = 200;
    } rows[] = {
        {{ranged}, false, "", false, offered, "no stream is known"},
        {{ranged}, false, ranged, true, "", "known by its address"},
        {{ranged}, false, part + "22&range=8-9", true, "", "known by its stream"},
        {{ranged}, false, part + "18", false, "", "a video that is known"},
        {{ranged}, false, "http://g.googlevideo.com/videoplayback?id=2", false, offered, "another is"},
        {{part + "137"}, false, "", false, "", "picture without sound"},
        {{part + "43"}, false, "", false, "ytatozab://" + part + "43 | 360p WEBM | webm\n", "WebM too"},
        {{"http://h/a.mp3"}, false, "", false, "", "neither a file nor a part"},
        {{part + "22"}, false, "", false, "", "a page of its own", 0x80000},
        {{part + "22"}, false, "", false, "", "its body is read", 0, listen},
        {{part + "22"}, false, "", false, "", "an error", 0, browser, 404},
        {{"http://h/a%C3%A4.MP3?range=1&x#f", "", "", "MP3", 7}, true, "", false, song, "by its address"},
        {{"http://h/a.FLV", "video/mp4", "utf-8''n.mp4", "mp4", -1}, true, "", false, film, "by its server"},
        {{"http://h/a", "VIDEO/X-FLV"}, true, "", false, "http://h/a | a | flv\n", "by its type"},
    };
    for (const auto& row : rows) {
        zab::LocalPage page;
        page.change([&](zab::OfferedMedia& media) {
            media.addCatalogue(std::make_unique<zab::CYoutubeParser>());
            auto catalogue = std::make_unique<zab::CYoutubeParser>();
            catalogue->addEntry(zab::utf16FromUtf8(row.catalogue), 0, false);
            media.addCatalogue(std::move(catalogue));
        });
        zab::Decision decision;
        decision.outcome = row.outcome;
        decision.status = row.status;
        decision.offer = row.isFile;
        EXPECT_EQ(shown(captureResponse(decision, row.loadFlags, row.context, page)), row.entries) << row.why;
        EXPECT_EQ(page.media().catalogues()[1]->entries()[0].used != 0, row.marks) << row.why;
    }
}

class Library final : public zab::CompanionLibraries {
  public:
    std::optional<zab::DashStreams> dashStreams(std::string_view, std::string_view) override { return streams; }
    zab::SniffedContent sniff(std::string_view) override { return sniffed; }
    std::optional<zab::DashStreams> streams{std::in_place};
    zab::SniffedContent sniffed{zab::SniffedContent::Verdict::recognised, "", 0, 5, 1, 2, 3};
};

TEST(CaptureWithCompanions, DescribesWhatTheyTell) {
    Library library;
    zab::CaptureContext context = contextFor("http://h/m.mpd?range=1");
    context.companions = &library;
    const auto dash = [&](std::string_view body) { return captureWhole(MediaKind::dash, context, body); };
    library.streams->audio = {{"a", 900, 1024, 0}};
    EXPECT_EQ(
        dash("<MPD></MPD>"),
        "mpdatozab://http://h/m.mpd?range=1&selected_id=a | bitrate 1kbps | mp4 | audio | bitrate 1024\n");
    library.streams->video = {{"v", 720, 0, 5}, {"w", 719, 2047, 0}, {"x", 0, 0, 0}};
    const std::string link = "mpdtozab://http://h/m.mpd?range=1&selected_id=";
    EXPECT_EQ(dash(std::string(996, ' ') + "<mpd>"),
              link + "v | 5 720p HD | mp4 | size 5 | height 720\n" + link +
                  "w | 719p bitrate 1kbps | mp4 | height 719 | bitrate 2047\n" + link + "x |  | mp4\n");
    EXPECT_EQ(dash(std::string(997, ' ') + "<MPD>"), "") << "a manifest begins within its first 1,000 bytes";
    library.streams.reset();
    EXPECT_EQ(dash("<MPD>"), "");

    const std::string film =
        box("moov", box("mvhd", std::string(15, '\0') + "\2\0\0\0\x0E"s) +
                        box("trak", box("tkhd", std::string(77, '\0') + "\1\0\0\2\xD0\0\0"s) +
                                        box("mdia", std::string(40, '\0'))));
    const std::string root = "<manifest xmlns='http://ns.adobe.com/f4m/1.0'>", hds = root + kMedia,
                      dashBody = representation(247, "http://v/a", "") + representation(140, "http://s/b", "");
    const std::size_t spare = 87 - root.find("1.0");
    struct {
        const char *extension, *url;
        std::string body, entries;
        const char* why;
        std::uint64_t size = 0;
    } rows[] = {
        {"M4A", "http://h/a?range=1", "x",
         "http://h/a? | a | m4a | audio | size 1 | duration 5 | width 1 | height 2 | bitrate 3\n",
         "what neither the library nor the file tells: the response's length"},
        {"MOV", "http://h/a", film,
         "http://h/a | a | mov | size 8 | duration 7 | width 1 | height 720 | bitrate 3\n",
         "a film's own time and height count for more", 8},
        {"mp4", "http://h/a", "", "http://h/a | a | mp4 | duration 5 | width 1 | height 2 | bitrate 3\n",
         "where it has them"},
        {"mkv", "http://h/a", film,
         "http://h/a | a | mkv | size 8 | duration 5 | width 1 | height 2 | bitrate 3\n", "no such film", 8},
        {"XML", "http://h/m", std::string(spare, ' ') + hds,
         "dhstozab://http://h/m | 1p | flv | second http://h/v" + kMediaExtra,
         "its name space ends in 87 bytes"},
        {"xml", "http://h/m", std::string(spare + 1, ' ') + hds, "", "and behind them"},
        {"xml", "http://manifest.googlevideo.com/api/manifest/x", dashBody,
         "ytatozab://http://v/a | 720p HD MKV | MKV | second http://s/b\n", "the manifest of another host"},
        {"xml", "http://h/m", dashBody, "", "XML of another kind is no entry"},
    };
    for (auto& row : rows) {
        context.url = row.url;
        context.contentLength = static_cast<std::int64_t>(row.body.size());
        library.sniffed.extension = row.extension;
        library.sniffed.size = row.size;
        for (const char quote : {'\'', '"'}) {
            std::ranges::replace(row.body, '\'', quote);
            library.sniffed.verdict = zab::SniffedContent::Verdict::recognised;
            EXPECT_EQ(captureWhole(MediaKind::sniff, context, row.body), row.entries) << row.why << quote;
            library.sniffed.verdict = zab::SniffedContent::Verdict::needsMore;
            EXPECT_EQ(captureWhole(MediaKind::sniff, context, row.body), "") << "nothing was recognised";
        }
    }
}

TEST(CaptureRun, TakesABoundedNumberOfOffers) {
    zab::LocalPage page;
    const auto context = contextFor(kUrl);
    zab::CaptureRun run(context, page);
    for (std::size_t i = 0; i < zab::CaptureRun::kMostOffers; ++i)
        EXPECT_TRUE(run.offer({.link = "http://h/"}));
    EXPECT_FALSE(run.offer({.link = "http://h/"}));
}

// Whatever came and went: the entry that fills the page to its last byte is held, and one byte more is not.
TEST(OfferedMedia, IsFullWhenItIs) {
    zab::OfferedMedia media;
    const auto offers = [&](const char* link, bool isBare = false, const char* text = "") {
        media.offer(
            {.link = link, .secondUrl = text, .extra = text, .extension = text, .isBarePlaylist = isBare});
    };
    offers("http://h/gone");
    EXPECT_EQ(media.takeEntries().size(), 1u);
    for (int twice = 0; twice < 2; ++twice) {
        offers("hlstozab://dropped", true);
        offers("http://h/gone");
        media.dropBarePlaylist("dropped");
        offers("hlstozab://learns", false, "xx");
        media.learnFromPlaylist("learns", 1, "mp4");
        if (!media.learnFromPlaylist("replaced", 1, "mp4")) offers("hlstozab://replaced", true);
        offers("hls2tozab://replaced", false, "xxx");
    }
    std::size_t weight = 0;
    for (const auto& entry : media.entries())
        weight += entry.link.size() + entry.secondUrl.size() + entry.extra.size() + entry.extension.size();
    EXPECT_EQ(media.entries().size(), 3u) << "each stream once";
    for (const std::size_t tooMuch : {std::size_t{1}, std::size_t{0}}) {
        zab::MediaEntry last{.link = "http://last/", .page = {0, "u", "t", "r", "c", "a", "n"}};
        last.description.assign(zab::OfferedMedia::kMostEntryBytes - weight - last.link.size() - 6 + tooMuch,
                                'd');
        media.offer(std::move(last));
        EXPECT_EQ(media.entries().size(), 4 - tooMuch);
    }
}

TEST(OfferedMedia, LearnsAboutWhatItHoldsAlsoWhenItIsFull) {
    zab::OfferedMedia page;
    page.offer({.link = "hlstozab://"});
    EXPECT_TRUE(page.entries().empty()) << "no address behind the scheme";
    for (std::size_t i = 0; i <= zab::OfferedMedia::kMostEntries; ++i)
        page.offer({.link = "http://h/" + std::to_string(i)});
    EXPECT_EQ(page.entries().size(), zab::OfferedMedia::kMostEntries) << "a full page drops the new one";
    for (const std::uint32_t told : {5u, 6u}) {
        page.offer({.link = "http://h/0", .size = told, .duration = told, .width = told, .height = told});
        EXPECT_EQ(shown(page.entries().front()),
                  "http://h/0 |  |  | size 5 | duration 5 | width 5 | height 5\n")
            << "what is known stays";
    }

    zab::OfferedMedia large;
    zab::MediaEntry film{.link = "hlstozab://http://h/v", .isBarePlaylist = true};
    large.offer(film);
    film.isBarePlaylist = false;
    film.extra.assign(zab::OfferedMedia::kMostEntryBytes - film.link.size() + 1, 'u');
    for (const bool isTooLarge : {true, false}) {
        large.offer(film);
        EXPECT_EQ(large.entries().front().isBarePlaylist, isTooLarge);
        film.extra.pop_back();
    }
    EXPECT_EQ(large.entries().size(), 1u);
}

TEST(MediaPages, HoldTheNewestAndForgetByEitherName) {
    zab::MediaPages pages;
    auto* const object = reinterpret_cast<nsISupports*>(&pages);
    const auto open = [&](std::uint64_t id) -> zab::OfferedMedia& {
        return pages.open({{id == 3 ? object : nullptr, id}, ""}).media;
    };
    for (std::uint64_t id = 1; id <= zab::MediaPages::kMostPages; ++id) open(id).offer({.link = "http://h/"});
    EXPECT_FALSE(open(1).entries().empty()) << "the same record";
    open(1'000'000);
    EXPECT_EQ(pages.find(1), nullptr);
    for (const zab::DocumentKey& key : {zab::DocumentKey{object, 0}, {nullptr, 2}, {nullptr, 0}})
        pages.forget(key);
    EXPECT_TRUE(pages.find(2) == nullptr && pages.find(3) == nullptr);
    EXPECT_EQ(pages.count(), zab::MediaPages::kMostPages - 2);

    auto& media = open(4);
    for (std::size_t i = 0; i <= zab::OfferedMedia::kMostCatalogues; ++i) {
        EXPECT_EQ(media.catalogues().size(), i);
        media.addCatalogue(std::make_unique<zab::CYoutubeParser>(i == 1 ? u"second" : u""));
    }
    EXPECT_EQ(media.catalogues().size(), zab::OfferedMedia::kMostCatalogues);
    EXPECT_TRUE(media.catalogues().front()->pageUrl() == u"second") << "the oldest goes first";
}

TEST(BodyCollector, TakesABodyAsFarAsItCounts) {
    using enum MediaKind;
    const std::string link = "http://a/x", playlist = "#EXT-X-VERSION:1\n#EXTINF:1\na\n",
                      long2Mb(2'000'000, '\n'), video = "<video src=a.mp4>";
    const struct {
        MediaKind kind;
        std::int64_t length;
        std::string body;
        bool offers;
        const char* why;
    } rows[] = {
        {linkText, 10, link + "y", true, "nothing is read behind a known length"},
        {linkText, 11, link, false, "a known length that is not reached"},
        {linkText, 0, link + std::string(2037, ' '), true, "a list of 2,047 bytes"},
        {linkText, 0, link + std::string(2038, ' '), false, "and one byte too many"},
        {facebook, 0, "videoData:hd_src:'http://f/h'" + long2Mb, true, "a page that is cut"},
        {hls, 99, playlist, true, "a playlist counts although it ended early"},
        {hls, 0, playlist + long2Mb, false, "cut without its end"},
        {hls, 0, playlist + "#EXT-X-ENDLIST" + long2Mb, true, "cut behind its end"},
        {page, 5, video, true, "a page is read whatever its length"},
        {page, 0, std::string(20'480 - 17, ' ') + video, true, "its first 20,480 bytes"},
        {page, 0, std::string(20'480 - 16, ' ') + video, false, "and no more"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(!captureWhole(row.kind, contextFor("http://h/p", row.length), row.body).empty(), row.offers)
            << row.why;
    for (std::size_t i = 1; i < zab::kMediaKindCount; ++i) {
        const auto kind = static_cast<MediaKind>(i);
        SCOPED_TRACE(zab::mediaKindName(kind));
        const bool takesAny = kind == MediaKind::hdsFragment || kind == MediaKind::page;
        EXPECT_TRUE(BodyCollector(kind, BodyCollector::kMostKnownBytes).wantsMore());
        EXPECT_EQ(BodyCollector(kind, BodyCollector::kMostKnownBytes + 1).wantsMore(), takesAny);
        const std::uint32_t cap = zab::mediaKindCapBytes(kind);
        if (cap == 0) continue;
        BodyCollector body(kind, 0);
        EXPECT_EQ(body.add(std::string(cap, ' ')).size(), cap);
        EXPECT_TRUE(body.wantsMore());
        EXPECT_EQ(body.add("x"), "");
        EXPECT_FALSE(body.wantsMore());
    }
    EXPECT_FALSE(BodyCollector().whole());
}

}  // namespace
