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

/// One page, and what it is sent: a manifest of DASH, a playlist, or without a body a fragment of HDS.
class Site {
  public:
    Site& gets(std::string_view url, std::string_view body) {
        if (body.empty()) return runs(url, body, [](auto, zab::CaptureRun& run) { offerHdsFragment(run); });
        return runs(url, body, body.starts_with("<MPD") ? zab::offerDash : zab::offerHls);
    }
    /// A response that is media by itself.
    Site& file(std::string_view url) {
        return runs(url, {}, [](auto, zab::CaptureRun& run) { offerOwnEntry(run); });
    }
    [[nodiscard]] std::string menu() const { return shown(page_.media().entries()); }
    [[nodiscard]] std::size_t entries() const { return page_.media().entries().size(); }

  private:
    Site& runs(std::string_view url, std::string_view body, zab::BodyHandler handler) {
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
    const struct {
        std::vector<std::pair<const char*, std::string_view>> responses;
        std::string menu;
        const char* why;
    } rows[] = {
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
         "one address for a master playlist and for a film"},
        {{{"aSeg1-Frag1?1", ""}, {"aSeg1-Frag2?2", ""}, {"bSeg1-Frag1", ""}, {"aSeg2-Frag1?3", ""}},
         "dhs2tozab://http://h/aSeg%ld-Frag%ld?1 | a | flv\ndhs2tozab://http://h/bSeg%ld-Frag%ld | b | flv\n",
         "a stream, not each fragment of it"},
    };
    for (const auto& row : rows) {
        Site site;
        for (const auto& [name, body] : row.responses) site.gets(std::string("http://h/") + name, body);
        EXPECT_EQ(site.menu(), row.menu) << row.why;
    }
}

TEST(Streams, PartsAreNoFiles) {
    const struct {
        std::string_view body;
        const char* url;
        bool isFile;
        const char* why;
    } rows[] = {
        {kFmp4, "http://h/d/s/2.M4S?y/z", false, "beside a segment, in any case"},
        {kFmp4, "http://h/d/i2.mp4", false, "beside the initialisation map"},
        {kFmp4, "http://h/d/s/film.mp4", true, "another extension"},
        {kFmp4, "http://h/d/t/2.m4s", true, "another directory"},
        {"<MPD><BaseURL> v&#x2F;a/ </BaseURL></MPD>", "http://h/d/v/a/1.m4s", false, "a base address"},
        {"<MPD/>", "http://h/d/1.m4v", false, "a manifest's own directory"},
        {"<MPD/>", "http://h/d/1.ts", true, "another extension"},
        {kText, "http://h/d/1.m4v", true, "a page without such streams"},
    };
    for (const auto& row : rows) {
        Site site;
        const std::size_t before = site.gets("http://h/d/manifest", row.body).entries();
        EXPECT_EQ(site.file(row.url).entries() > before, row.isFile) << row.why;
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
        std::string body;
        const char* extension;
        std::size_t known;
        const char* why;
    } rows[] = {{segments, "ts", zab::PageStreams::kMostPlaces, "segments"},
                {"<MPD>" + ids + byId, "mp4", 64, "representations"},
                {"<MPD>" + patterns, "mp4", 64, "templates"},
                {"<MPD>" + bases, "mp4", 8, "base addresses, each alone and below the outermost"}};
    for (const auto& row : rows) {
        Site site;
        site.gets("http://h/manifest", row.body);
        const std::size_t entries = site.entries();
        for (const std::size_t known : {std::size_t{0}, row.known - 1, row.known}) {
            const bool isFile = known == row.known;
            const auto segment = "http://h/" + folder(known) + "x." + row.extension;
            EXPECT_EQ(site.file(segment).entries(), entries + isFile) << row.why << known;
        }
    }
    Site site;
    site.gets("http://h/m", master + "#EXT-X-STREAM-INF:X=1\nv\n");
    const std::size_t entries = site.entries();
    EXPECT_EQ(site.gets("http://h/" + folder(0) + "a.m3u8", kFmp4).entries(), entries);
    EXPECT_EQ(site.gets("http://h/" + folder(255) + "a.m3u8", kFmp4).entries(), entries);
    EXPECT_GT(site.gets("http://h/" + folder(256) + "a.m3u8", kFmp4).entries(), entries);
}

}  // namespace
