// What a page knows of its streams: sequences of responses, and the menu that they leave.
#include <gtest/gtest.h>

#include <functional>
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
    Site& fragment(std::string_view url) {
        return gets(url, {}, [](std::string_view, zab::CaptureRun& run) { zab::offerHdsFragment(run); });
    }
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
        {[](Site& site) {
             site.hls("http://h/m",
                      "#EXT-X-MEDIA:TYPE=VIDEO,GROUP-ID=\"v\",NAME=\"Left\",URI=\"l.m3u8\"\n"
                      "#EXT-X-STREAM-INF:VIDEO=\"v\"\nv.m3u8\n")
                 .hls("http://h/l.m3u8", kFmp4);
         },
         "hlstozab://http://h/v.m3u8 | v | ts\nhlstozab://http://h/l.m3u8 | l | mp4 | duration 9\n",
         "another view is a film of its own"},
        {[](Site& site) {
             site.hls("http://h/m", kMaster).hls("http://h/m", kFmp4).hls("http://h/m", kMaster);
         },
         film(kTs) + std::string(kSound) + "hlstozab://http://h/m | m | mp4 | duration 9\n",
         "one address for a master playlist and for a film"},
        {[](Site& site) {
             site.fragment("http://h/aSeg1-Frag1?1").fragment("http://h/aSeg1-Frag2?2");
             site.fragment("http://h/bSeg1-Frag1").fragment("http://h/aSeg2-Frag1?3");
         },
         "dhs2tozab://http://h/aSeg%ld-Frag%ld?1 | a | flv\ndhs2tozab://http://h/bSeg%ld-Frag%ld | b | flv\n",
         "a stream, not each fragment of it"},
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
    const auto url = [](std::size_t i) { return "http://h/" + std::to_string(i) + "/s.ts"; };
    const struct {
        std::function<void(const std::string&)> add;
        std::function<bool(const std::string&)> holds;
        std::size_t most;
    } rows[] = {
        {[&](auto& place) { streams.addPlace(place); }, [&](auto& place) { return streams.isPart(place); },
         zab::PageStreams::kMostPlaces},
        {[&](auto& list) { streams.addRendition(list); }, [&](auto& list) { return streams.isRendition(list); },
         zab::PageStreams::kMostRenditions},
        {[&](auto& base) { streams.addFragmentsOf(base); },
         [&](auto& base) { return streams.knowsFragmentsOf(base); }, zab::PageStreams::kMostFragmentStreams},
    };
    for (const auto& row : rows) {
        for (std::size_t added = 0; added < 3 * row.most; ++added) {
            row.add(url(added));
            row.add(url(added));
            const std::size_t oldest = added < row.most ? 0 : added + 1 - row.most;
            ASSERT_TRUE(row.holds(url(oldest))) << added;
            ASSERT_TRUE(oldest == 0 || !row.holds(url(oldest - 1))) << added;
        }
    }
}

// Of more than a page remembers, what a body names first counts.
TEST(Streams, RememberTheFirstPlacesOfABody) {
    const auto folder = [](std::size_t i) { return std::to_string(i) + "/"; };
    std::string master, segments = "#EXT-X-VERSION:3\n", ids, patterns, bases;
    for (std::size_t i = 0; i < 300; ++i) {
        const std::string name = folder(i);
        master += "#EXT-X-MEDIA:TYPE=AUDIO,NAME=\"same\",URI=\"" + name + "a.m3u8\"\n";
        for (int twice = 0; twice < 2; ++twice) segments += "#EXTINF:9\n" + name + "s.ts\n";
        ids += "<Representation id='" + std::to_string(i) + "'/><Representation id='0'/>";
        patterns += "<SegmentTemplate media='" + name + "$Time$.mp4'/>";
        bases += "<BaseURL>" + name + "</BaseURL>";
    }
    const std::string byId = "<SegmentTemplate media='$RepresentationID$/$RepresentationID$-$Time$.mp4'/>";
    const struct {
        std::string playlist, manifest;
        std::size_t known;
        const char* why;
    } rows[] = {{segments, "", zab::PageStreams::kMostPlaces, "segments"},
                {"", "<MPD>" + ids + byId, 64, "representations"},
                {"", "<MPD>" + patterns, 64, "templates"},
                {"", "<MPD>" + bases, 8, "base addresses, each alone and below the outermost"}};
    for (const auto& row : rows) {
        Site site;
        if (!row.playlist.empty()) site.hls("http://h/l.m3u8", row.playlist);
        if (!row.manifest.empty()) site.dash("http://h/m.mpd", row.manifest);
        const std::size_t entries = site.entries();
        for (const std::size_t known : {std::size_t{0}, row.known - 1, row.known}) {
            const bool isFile = known == row.known;
            const auto segment = "http://h/" + folder(known) + "x." + (row.playlist.empty() ? "mp4" : "ts");
            EXPECT_EQ(site.file(segment).entries(), entries + isFile) << row.why << known;
        }
    }
    Site site;
    site.hls("http://h/m", master + "#EXT-X-STREAM-INF:X=1\nv\n");
    const std::size_t entries = site.entries();
    EXPECT_EQ(site.hls("http://h/" + folder(0) + "a.m3u8", kFmp4).entries(), entries);
    EXPECT_EQ(site.hls("http://h/" + folder(255) + "a.m3u8", kFmp4).entries(), entries);
    EXPECT_GT(site.hls("http://h/" + folder(256) + "a.m3u8", kFmp4).entries(), entries);
}

}  // namespace
