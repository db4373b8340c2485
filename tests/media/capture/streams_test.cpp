// What a page knows of its streams: sequences of responses, and the menu that they leave.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "media/capture/capture_check.h"
#include "media/capture/handlers/handlers.h"

namespace {

using zabtest::contextFor;
using zabtest::shown;

/// One page, and what it is sent.
class Site {
  public:
    Site& hls(std::string_view url, std::string_view body) { return gets(url, body, zab::offerHls); }
    Site& dash(std::string_view url, std::string_view body) { return gets(url, body, zab::offerDash); }
    /// A response that is media by itself.
    Site& file(std::string_view url) {
        return gets(url, {}, [](std::string_view, zab::CaptureRun& run) { zab::offerOwnEntry(run); });
    }
    [[nodiscard]] std::string menu() const { return shown(page_.media().entries()); }
    [[nodiscard]] std::size_t entries() const { return page_.media().entries().size(); }

  private:
    Site& gets(std::string_view url, std::string_view body, zab::BodyHandler handler) {
        const zab::CaptureContext context = contextFor(url);
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
    "#EXT-X-MEDIA:TYPE=SUBTITLES,GROUP-ID=\"t\",NAME=\"English\",LANGUAGE=\"en\",URI=\"text.m3u8\"\n"
    "#EXT-X-STREAM-INF:AUDIO=\"hi\",RESOLUTION=1280x720\nhigh.m3u8\n";
constexpr std::string_view kSound = "hlstozab://http://h/de.m3u8 | Deutsch de | ts | audio\n";
constexpr std::string_view kFmp4 = "#EXT-X-MAP:URI=\"i.mp4\"\n#EXTINF:9\ns/1.m4s\n#EXT-X-ENDLIST\n";
constexpr std::string_view kText = "#EXT-X-TARGETDURATION:9\n#EXTINF:9\n1.vtt\n#EXT-X-ENDLIST\n";

std::string film(std::string_view facts) {
    return "hls2tozab://http://h/high.m3u8 | 720p | " + std::string(facts) + " | height 720\n";
}
constexpr std::string_view kTs = "ts | second http://h/en.m3u8";

TEST(Streams, AreOfferedAsAUserWouldListThem) {
    const std::string learnt =
        "hls2tozab://http://h/high.m3u8 | 720p | mp4 | second http://h/en.m3u8 | duration 9 | "
        "height 720\n";
    const struct {
        void (*happens)(Site& site);
        std::string menu;
        const char* why;
    } rows[] = {
        {[](Site& site) { site.hls("http://h/m", kMaster); }, film(kTs) + std::string(kSound),
         "each quality once, each further language once, no subtitles"},
        {[](Site& site) {
             site.hls("http://h/m", kMaster)
                 .hls("http://h/text.m3u8", kText)
                 .hls("http://h/de-low.m3u8", kFmp4);
         },
         film(kTs) + std::string(kSound), "playlists of renditions are no films"},
        {[](Site& site) {
             site.hls("http://h/text.m3u8", kText).hls("http://h/en.m3u8", kText).hls("http://h/m", kMaster);
         },
         film(kTs) + std::string(kSound), "not when they came first either"},
        {[](Site& site) { site.hls("http://h/m", kMaster).hls("http://h/high.m3u8", kFmp4); },
         learnt + std::string(kSound), "a media playlist tells length and format of its entry"},
        {[](Site& site) { site.hls("http://h/high.m3u8", kFmp4).hls("http://h/m", kMaster); },
         learnt + std::string(kSound), "also when it came first: one stream, one entry"},
        {[](Site& site) { site.hls("http://h/m", kMaster).hls("http://h/de.m3u8", kFmp4); },
         film(kTs) + "hlstozab://http://h/de.m3u8 | Deutsch de | mp4 | audio | duration 9\n",
         "the sound's own"},
        {[](Site& site) {
             site.hls("http://h/live.m3u8", "#EXT-X-VERSION:3\n#EXTINF:9\n1.ts\n")
                 .hls("http://h/live.m3u8", "#EXT-X-VERSION:3\n#EXTINF:9\n2.ts\n");
         },
         "hlstozab://http://h/live.m3u8 | live | ts\n", "a live playlist comes again and again"},
    };
    for (const auto& row : rows) {
        Site site;
        row.happens(site);
        EXPECT_EQ(site.menu(), row.menu) << row.why;
    }
}

TEST(Streams, PartsAreNoFiles) {
    const struct {
        void (*happens)(Site& site);
        const char* url;
        bool isFile;
        const char* why;
    } rows[] = {
        {[](Site& site) { site.hls("http://h/v/a.m3u8", kFmp4); }, "http://h/v/s/2.M4S?y/z", false,
         "beside a segment, in any case"},
        {[](Site& site) { site.hls("http://h/v/a.m3u8", kFmp4); }, "http://h/v/i2.mp4", false,
         "beside the initialisation map"},
        {[](Site& site) { site.hls("http://h/v/a.m3u8", kFmp4); }, "http://h/v/s/film.mp4", true,
         "another extension"},
        {[](Site& site) { site.hls("http://h/v/a.m3u8", kFmp4); }, "http://h/v/t/2.m4s", true,
         "another directory"},
        {[](Site& site) {
             site.hls("http://h/a.m3u8", "#EXT-X-VERSION:3\n#EXTINF:9\n1/s.ts\n#EXTINF:9\n2/s.ts\n");
         },
         "http://h/2/s.ts", false, "a folder for each segment"},
        {[](Site& site) { site.dash("http://h/d/m.mpd", "<MPD><BaseURL> v&#x2F;a/ </BaseURL></MPD>"); },
         "http://h/d/v/a/1.m4s", false, "a base address of a DASH manifest"},
        {[](Site& site) { site.dash("http://h/d/m.mpd", "<MPD/>"); }, "http://h/d/1.m4v", false,
         "its own directory"},
        {[](Site& site) {
             site.dash("http://h/d/m.mpd",
                       "<MPD><Representation id=\"hi\"><SegmentTemplate "
                       "media=\"$RepresentationID$/s-$Number$.mp4\"/>");
         },
         "http://h/d/hi/s-1.mp4", false, "a folder for each representation"},
        {[](Site& site) { site.dash("http://h/d/m.mpd", "<MPD/>"); }, "http://h/d/1.ts", true,
         "another extension"},
        {[](Site&) {}, "http://h/d/1.m4v", true, "a page without streams"},
    };
    for (const auto& row : rows) {
        Site site;
        row.happens(site);
        const std::size_t before = site.entries();
        EXPECT_EQ(site.file(row.url).entries() > before, row.isFile) << row.why;
    }
}

TEST(Streams, TakeThePlaceOfFilesOnAFullPage) {
    Site site;
    for (std::size_t i = 0; i < zab::OfferedMedia::kMostEntries; ++i)
        site.file("http://h/" + std::to_string(i) + ".mp4");
    site.hls("http://s/m", kMaster).file("http://h/new.mp4");
    EXPECT_EQ(site.entries(), zab::OfferedMedia::kMostEntries);
    EXPECT_TRUE(site.menu().starts_with("http://h/2.mp4 ")) << "the oldest two files went";
    EXPECT_TRUE(site.menu().ends_with("hlstozab://http://s/de.m3u8 | Deutsch de | ts | audio\n"))
        << "and no file came in the place of a stream";
    Site streams;
    for (int i = 0; i < 150; ++i) streams.hls("http://h/" + std::to_string(i) + ".m3u8", kText);
    EXPECT_TRUE(streams.menu().starts_with("hlstozab://http://h/0.m3u8 ")) << "no stream pushes another out";
}

TEST(Streams, ForgetWhatTheyLearntFirst) {
    zab::PageStreams streams;
    const auto place = [](std::size_t i) { return "http://h/" + std::to_string(i) + "/s.ts"; };
    for (std::size_t i = 0; i < zab::PageStreams::kMostPlaces; ++i) streams.addPlace(place(i));
    streams.addPlace(place(1));
    EXPECT_TRUE(streams.isPart(place(0))) << "exactly as many as are kept, each once";
    streams.addPlace("http://h/new/s.ts");
    EXPECT_FALSE(streams.isPart(place(0)));
    EXPECT_TRUE(streams.isPart(place(1)));
}

}  // namespace
