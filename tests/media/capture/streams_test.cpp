// What a page knows of its streams: sequences of responses, and the menu that they leave.
#include <string>
#include <vector>

#include "media/capture/capture_check.h"
#include "media/capture/handlers/handlers.h"
#include "readings.h"

namespace {

using zabtest::contextFor;
using zabtest::shown;

constexpr zab::BodyHandler kItself = [](auto, zab::CaptureRun& run) { offerOwnEntry(run); };

/// One page, and what it is sent: a manifest of DASH, a playlist, or without a body a fragment of HDS.
class Site {
  public:
    Site& gets(std::string_view url, std::string_view body) {
        if (body.empty()) return runs(url, body, [](auto, zab::CaptureRun& run) { offerHdsFragment(run); });
        return runs(url, body, body.starts_with("<MPD") ? zab::offerDash : zab::offerHls);
    }
    /// A response that is media by itself, and is an MP4 for whoever looks into it.
    Site& file(std::string_view url, zab::BodyHandler handler = kItself) { return runs(url, "\3", handler); }
    [[nodiscard]] std::string menu() const { return shown(page_.media().entries()); }
    [[nodiscard]] std::size_t entries() const { return page_.media().entries().size(); }

  private:
    Site& runs(std::string_view url, std::string_view body, zab::BodyHandler handler) {
        zabtest::EchoingLibraries libraries;
        zab::CaptureContext context = contextFor(url);
        if (handler == &zab::offerSniffed) context.companions = &libraries;
        zab::CaptureRun run(context, page_);
        handler(body, run);
        page_.take(run.takeEntries());
        return *this;
    }

    zab::LocalPage page_;
};

constexpr std::string_view kMaster =
    "#EXT-X-MEDIA:TYPE=AUDIO,GROUP-ID=\"hi\",NAME=\"English\",LANGUAGE=\"en\",URI=\"en.m3u8\"\n"
    "#EXT-X-MEDIA:TYPE=AUDIO,GROUP-ID=\"hi\",NAME=\"Deutsch\",LANGUAGE=\"de\",URI=\"de.m3u8\"\n"
    "#EXT-X-MEDIA:TYPE=AUDIO,GROUP-ID=\"low\",NAME=\"Deutsch\",LANGUAGE=\"de\",URI=\"de-low.m3u8\"\n"
    "#EXT-X-MEDIA:TYPE=AUDIO,GROUP-ID=\"low\",NAME=\"Among the pictures\"\n"
    "#EXT-X-MEDIA:TYPE=SUBTITLES,GROUP-ID=\"t\",NAME=\"English\",LANGUAGE=\"en\",URI=\"text.m3u8\"\n"
    "#EXT-X-STREAM-INF:AUDIO=\"hi\",RESOLUTION=1280x720\nhigh.m3u8\n";
const std::string kSound = "hlstozab://http://h/de.m3u8 | Deutsch de | ts | audio\n";
constexpr std::string_view kFmp4 = "#EXT-X-MAP:URI=\"i.mp4\"\n#EXTINF:9\ns/1.m4s\n#EXT-X-ENDLIST\n";
constexpr std::string_view kLive = "#EXT-X-VERSION:3\n#EXTINF:9\n1.ts\n";
constexpr std::string_view kText = "#EXT-X-TARGETDURATION:9\n#EXTINF:9\n1.vtt\n#EXT-X-ENDLIST\n";

std::string film(std::string_view facts) {
    return "hls2tozab://http://h/high.m3u8 | 720p | " + std::string(facts) + " | height 720\n";
}

TEST(Streams, AreOfferedAsAUserWouldListThem) {
    const std::string known = film("ts | second http://h/en.m3u8"),
                      learnt = film("mp4 | second http://h/en.m3u8 | duration 9") + kSound;
    using Responses = std::vector<std::pair<const char*, std::string_view>>;
    const auto menuOf = [](const Responses& responses) {
        Site site;
        for (const auto& [name, body] : responses) site.gets(std::string("http://h/") + name, body);
        return site.menu();
    };
    const zabtest::ReadingOf<std::string, Responses> rows[] = {
        {{{"m", kMaster}}, known + kSound, "each quality once, each further language once, no subtitles"},
        {{{"m", kMaster}, {"text.m3u8", kText}, {"de-low.m3u8", kFmp4}},
         known + kSound,
         "playlists of renditions are no films"},
        {{{"text.m3u8", kText}, {"en.m3u8", kText}, {"m", kMaster}},
         known + kSound,
         "not when they came first either"},
        {{{"m", kMaster}, {"high.m3u8", kFmp4}}, learnt, "a playlist tells length and format of its entry"},
        {{{"high.m3u8", kFmp4}, {"m", kMaster}}, learnt, "also when it came first: one stream, one entry"},
        {{{"m", kMaster}, {"de.m3u8", kFmp4}},
         known + "hlstozab://http://h/de.m3u8 | Deutsch de | mp4 | audio | duration 9\n",
         "the sound's own"},
        {{{"live.m3u8", kLive}, {"live.m3u8", kLive}},
         "hlstozab://http://h/live.m3u8 | live | ts\n",
         "a live playlist comes again and again"},
        {{{"m", "#EXT-X-MEDIA:TYPE=VIDEO,URI=\"l.m3u8\"\n#EXT-X-STREAM-INF:VIDEO=\"v\"\nv.m3u8\n"},
          {"l.m3u8", kFmp4}},
         "hlstozab://http://h/v.m3u8 | v | ts\nhlstozab://http://h/l.m3u8 | l | mp4 | duration 9\n",
         "another view is a film of its own"},
        {{{"m", kMaster}, {"m", kFmp4}, {"m", kMaster}},
         known + kSound + "hlstozab://http://h/m | m | mp4 | duration 9\n",
         "one address for both"},
        {{{"aSeg1-Frag1?1", ""}, {"aSeg1-Frag2?2", ""}, {"bSeg1-Frag1", ""}, {"aSeg2-Frag1?3", ""}},
         "dhs2tozab://http://h/aSeg%ld-Frag%ld?1 | a | flv\ndhs2tozab://http://h/bSeg%ld-Frag%ld | b | flv\n",
         "a stream, not each fragment of it"},
    };
    zabtest::expectReadings(menuOf, rows);
}

TEST(Streams, PartsAreNoFiles) {
    constexpr std::string_view kTemplates =
        "<MPD><SegmentTemplate media='v/$Number$.m4s' initialization='i/x.mp4'/><SegmentList><Initialization "
        "sourceURL='j/x.mp4'/><SegmentURL media='s/1.m4s'/></SegmentList></MPD>";
    const struct {
        std::string_view body;
        const char* url;
        bool isFile;
        const char* why;
    } rows[] = {
        {kFmp4, "s/2.M4S?y/z", false, "beside a segment, in any case"},
        {kFmp4, "i2.mp4", false, "beside the initialisation map"},
        {kFmp4, "s/film.mp4", true, "another extension"},
        {kFmp4, "t/2.m4s", true, "another directory"},
        {"<MPD><BaseURL>manifest</BaseURL><BaseURL> v&#x2F;a/ </BaseURL></MPD>", "v/a/1.m4s", false,
         "a base address"},
        {"<MPD/>", "1.m4v", false, "a manifest's own directory"},
        {"<MPD/>", "1.ts", true, "another extension"},
        {kTemplates, "v/2.m4s", false, "a template's segments"},
        {kTemplates, "i/y.mp4", false, "and their beginning"},
        {kTemplates, "j/y.mp4", false, "a list's beginning"},
        {kTemplates, "s/2.m4s", false, "and its segments"},
        {"<MPD><SegmentTemplate media='$Time$/x.m4s'/></MPD>", "$Time$/y.m4s", true, "a directory that counts"},
        {kText, "1.m4v", true, "a page without such streams"},
    };
    for (const auto& row : rows) {
        for (const auto handler : {kItself, &zab::offerSniffed}) {
            Site site;
            const std::size_t before = site.gets("http://h/d/manifest", row.body).entries();
            site.file(std::string("http://h/d/") + row.url, handler);
            EXPECT_EQ(site.entries() > before, row.isFile) << row.why;
        }
    }
}

TEST(Streams, TakeThePlaceOfFilesOnAFullPage) {
    Site site;
    for (std::size_t i = 0; i < zab::OfferedMedia::kMostEntries; ++i)
        site.file("http://h/" + std::to_string(i) + ".mp4");
    site.gets("http://s/m", kMaster).file("http://h/new.mp4");
    EXPECT_EQ(site.entries(), zab::OfferedMedia::kMostEntries);
    EXPECT_TRUE(site.menu().starts_with("http://h/2.mp4 ")) << "the oldest two files went";
    EXPECT_TRUE(site.menu().ends_with("hlstozab://http://s/de.m3u8 | Deutsch de | ts | audio\n"))
        << "and no file came in the place of a stream";
    Site streams;
    for (int i = 0; i < 150; ++i) streams.gets("http://h/" + std::to_string(i) + ".m3u8", kText);
    EXPECT_TRUE(streams.menu().starts_with("hlstozab://http://h/0.m3u8 ")) << "no stream pushes another out";
}

TEST(Streams, ForgetWhatTheyLearntFirst) {
    zab::RecentKeys keys(3);
    for (std::uint64_t added = 1; added < 12; ++added) {
        for (int twice = 0; twice < 2; ++twice) keys.add(added);
        for (std::uint64_t key = 1; key <= added; ++key)
            EXPECT_EQ(keys.holds(key), key + 3 > added) << key << " of " << added;
    }
}

// Of more than a page remembers, what a body names first counts.
TEST(Streams, RememberTheFirstPlacesOfABody) {
    const auto many = [](std::string_view pattern) {
        std::string text;
        for (int i = 0; i < 300; ++i)
            for (const char c : pattern) c == '*' ? text += std::to_string(i) : text += c;
        return text;
    };
    const struct {
        std::string body;
        const char* extension;
        std::size_t known;
        const char* why;
    } rows[] = {
        {"#EXT-X-VERSION:3\n" + many("#EXTINF:9\n*/s.ts\n#EXTINF:9\n*/s.ts\n"), "ts",
         zab::PageStreams::kMostPlaces, "segments"},
        {"<MPD><SegmentTemplate media='$RepresentationID$/$RepresentationID$-$Time$.mp4'/>" +
             many("<Representation id='*'/><Representation id='0'/>"),
         "mp4", 64, "representations"},
        {"<MPD>" + many("<SegmentTemplate media='*/$Time$.mp4'/>"), "mp4", 64, "templates"},
        {"<MPD>" + many("<BaseURL>/*/</BaseURL>"), "mp4", 15, "bases, but for the manifest's own"},
        {"<MPD>" + many("<BaseURL>*/</BaseURL>"), "mp4", 8, "each alone and below the outermost"},
        {many("#EXT-X-MEDIA:TYPE=AUDIO,NAME=\"same\",URI=\"*/x.m3u8\"\n") + "#EXT-X-STREAM-INF:X=1\nv\n",
         "m3u8", zab::PageStreams::kMostRenditions, "renditions"}};
    for (const auto& row : rows) {
        Site site;
        site.gets("http://h/manifest", row.body);
        const std::size_t entries = site.entries();
        for (const std::size_t place : {std::size_t{0}, row.known - 1, row.known}) {
            const auto url = "http://h/" + std::to_string(place) + "/x." + row.extension;
            url.ends_with("m3u8") ? site.gets(url, kFmp4) : site.file(url);
            EXPECT_EQ(site.entries(), entries + (place == row.known)) << row.why << place;
        }
    }
}

}  // namespace
