#include "media.h"

#include <algorithm>

#include "content.h"

namespace zab::site {
namespace {

constexpr std::string_view kHlsType = "application/vnd.apple.mpegurl";

constexpr std::string_view kFilm =
    "#EXTM3U\n#EXT-X-STREAM-INF:BANDWIDTH=819200,RESOLUTION=640x360\nlow.m3u8\n"
    "#EXT-X-STREAM-INF:BANDWIDTH=2560000,RESOLUTION=1280x720\nhigh.m3u8\n";
constexpr std::string_view kFilmHigh =
    "#EXTM3U\n#EXT-X-TARGETDURATION:4\n#EXTINF:4.0,\nhigh-1.ts\n#EXTINF:4.0,\nhigh-2.ts\n#EXTINF:2.5,\n"
    "high-3.ts\n#EXT-X-ENDLIST\n";
constexpr std::string_view kFilmSegments[] = {"/media/film/high-1.ts", "/media/film/high-2.ts",
                                              "/media/film/high-3.ts"};
constexpr std::string_view kTalk =
    "#EXTM3U\n#EXT-X-MEDIA:TYPE=AUDIO,GROUP-ID=\"sound\",NAME=\"English\",URI=\"sound.m3u8\"\n"
    "#EXT-X-STREAM-INF:BANDWIDTH=1048576,RESOLUTION=1920x1080,AUDIO=\"sound\"\npicture.m3u8\n";
constexpr std::string_view kDash =
    "<?xml version=\"1.0\"?>\n<MPD xmlns=\"urn:mpeg:dash:schema:mpd:2011\"><Period>\n"
    "<AdaptationSet contentType=\"video\"><Representation id=\"v1\" height=\"480\" bandwidth=\"1024000\"/>"
    "<Representation id=\"v2\" height=\"1080\" bandwidth=\"4096000\"/></AdaptationSet>\n"
    "<AdaptationSet contentType=\"audio\"><Representation id=\"a1\" bandwidth=\"128000\"/></AdaptationSet>\n"
    "</Period></MPD>\n";
constexpr std::string_view kHds =
    "<?xml version=\"1.0\"?>\n<manifest xmlns=\"http://ns.adobe.com/f4m/1.0\"><duration>90</duration>\n"
    "<bootstrapInfo id=\"b1\">QUJD</bootstrapInfo>\n<media url=\"concert-480\" height=\"480\" bitrate=\"900\" "
    "bootstrapInfoId=\"b1\"><metadata>REVG</metadata></media>\n</manifest>\n";
constexpr std::string_view kWatchPage =
    "{\"streamingData\":{\"formats\":[{\"itag\":22,\"url\":\"https://r1.googlevideo.com/videoplayback?id=1"
    "\\u0026itag=22\"}]},\"videoDetails\":{\"title\":\"A song\"}}";
constexpr std::string_view kPlayer =
    "<title>A short "
    "film</title>{\"progressive\":[{\"url\":\"https://cdn.example/720.mp4\",\"quality\":\"720p\","
    "\"mime\":\"video/mp4\"}]}";

constexpr Resource kResources[] = {
    {.target = "/media/film/master.m3u8", .type = kHlsType, .text = kFilm},
    {.target = "/media/film/high.m3u8", .type = kHlsType, .text = kFilmHigh},
    {.target = kFilmSegments[0], .type = "video/mp2t", .size = 7000},
    {.target = kFilmSegments[1], .type = "video/mp2t", .size = 8000},
    {.target = kFilmSegments[2], .type = "video/mp2t", .size = 3000},
    {.target = "/media/talk/master.m3u8", .type = kHlsType, .text = kTalk},
    {.target = "/media/lecture.mpd", .type = "application/dash+xml", .text = kDash},
    {.target = "/media/concert.f4m", .type = "application/f4m+xml", .text = kHds},
    {.target = "/media/holiday.mp4", .type = "video/mp4", .size = 1'572'864},
    {.target = "/watch?v=song", .type = "application/json", .text = kWatchPage},
    {.target = "/video/1234", .type = "text/html; charset=utf-8", .text = kPlayer},
};

struct Page {
    int id;
    std::string_view title;
};
constexpr Page kFilmPage{201, "A film in segments"}, kTalkPage{202, "A talk with its sound apart"},
    kLecturePage{203, "A lecture (DASH)"}, kConcertPage{204, "A concert (HDS)"},
    kHolidayPage{205, "A holiday in one file"}, kSongPage{206, "A song on a watch page"},
    kShortPage{207, "A short film in a player"};

struct Load {
    const Page& page;
    std::string_view target;
    std::string_view why;
    std::string_view host = {};  // that the browser asks; empty: the site's own
};
constexpr Load kLoads[] = {
    {kFilmPage, "/media/film/master.m3u8", "an HLS master playlist"},
    {kFilmPage, "/media/film/high.m3u8", "its better variant, which is offered already"},
    {kFilmPage, kFilmSegments[0], "a segment, which is no film"},
    {kTalkPage, "/media/talk/master.m3u8", "an HLS playlist with an audio rendition"},
    {kLecturePage, "/media/lecture.mpd", "a DASH manifest"},
    {kConcertPage, "/media/concert.f4m", "an HDS manifest"},
    {kHolidayPage, "/media/holiday.mp4", "a video inside a page"},
    {kSongPage, "/watch?v=song", "the data of a watch page", "www.youtube.com"},
    {kShortPage, "/video/1234", "the page of a player", "player.vimeo.com"},
};

struct Entry {
    const Page& page;
    std::string_view scheme, target;  // of the link; a target of the site, or a whole address
    std::string_view behind;          // what follows in the link
    std::string_view label;
};
constexpr std::string_view kAll = "!ALL!";
// Each page's in menu order.
constexpr Entry kEntries[] = {
    {kFilmPage, "hlstozab://", "/media/film/high.m3u8", "", "720p bitrate  2500"},
    {kFilmPage, "hlstozab://", "/media/film/low.m3u8", "", "360p bitrate  800"},
    {kFilmPage, "", kAll, "", "Download all"},
    {kTalkPage, "hls2tozab://", "/media/talk/picture.m3u8", "", "1080p bitrate  1024"},
    {kLecturePage, "mpdtozab://", "/media/lecture.mpd", "&selected_id=v2", "1080p HD bitrate 4000kbps"},
    {kLecturePage, "mpdtozab://", "/media/lecture.mpd", "&selected_id=v1", "480p bitrate 1000kbps"},
    {kLecturePage, "", kAll, "", "Download all"},
    {kConcertPage, "dhstozab://", "/media/concert.f4m", "", "480p bitrate 900, 1 min 30 sec"},
    {kHolidayPage, "", "/media/holiday.mp4", "", "holiday.mp4, 1.5 MB"},
    {kSongPage, "ytatozab://", "https://r1.googlevideo.com/videoplayback?id=1&itag=22", "", "720p HD MP4"},
    {kShortPage, "", "https://cdn.example/720.mp4", "", "A short film 720p"},
};
constexpr const Entry& kChosen = kEntries[0];

std::string siteUrl(int port, std::string_view target) {
    return "http://127.0.0.1:" + std::to_string(port) + std::string(target);
}

std::string linkOf(const Entry& entry, int port) {
    const bool isOfSite = entry.target.front() == '/';
    return std::string(entry.scheme) + (isOfSite ? siteUrl(port, entry.target) : std::string(entry.target)) +
           std::string(entry.behind);
}

const Resource& mediaResource(std::string_view target) {
    return *std::ranges::find_if(kResources, [=](const Resource& row) { return row.target == target; });
}

std::string bytesOf(std::string_view target) { return replyTo(mediaResource(target), {}).body; }

/// What the chosen entry is, once its segments are joined.
std::string film() {
    std::string bytes;
    for (const std::string_view segment : kFilmSegments) bytes += bytesOf(segment);
    return bytes;
}

nlohmann::json exchangeOf(const Load& load, int port) {
    const std::string url = load.host.empty() ? siteUrl(port, load.target)
                                              : "http://" + std::string(load.host) + std::string(load.target);
    nlohmann::json exchange{
        {"name", "media " + std::string(load.target)},
        {"url", url},
        {"load", "embedded"},
        {"headers", {{"User-Agent", kUserAgent}, {"Referer", siteUrl(port, "/")}}},
        {"page",
         {{"id", load.page.id}, {"url", siteUrl(port, "/")}, {"title", load.page.title}, {"shown", true}}},
        {"expected",
         {{{"url", url},
           {"outcome", "browser"},
           {"browserSha256", sha256Of(bytesOf(load.target))},
           {"shown", true},
           {"why", load.why}}}}};
    if (!load.host.empty()) exchange["connect"] = "127.0.0.1:" + std::to_string(port);
    return exchange;
}

}  // namespace

std::span<const Resource> mediaResources() noexcept { return kResources; }

nlohmann::json mediaExchanges(int port) {
    nlohmann::json exchanges = nlohmann::json::array();
    for (const Load& load : kLoads) exchanges.push_back(exchangeOf(load, port));
    const std::string chosen = linkOf(kChosen, port);
    exchanges.push_back({{"name", "choice"},
                         {"chooses", chosen},
                         {"page", {{"id", kChosen.page.id}}},
                         {"expected",
                          {{{"url", chosen},
                            {"outcome", "transfer"},
                            {"flags", 0},
                            {"sha256", sha256Of(film())},
                            {"shown", true},
                            {"why", "the user's choice in the menu of the page's button"}}}}});
    return exchanges;
}

nlohmann::json mediaOffers(int port) {
    nlohmann::json offers = nlohmann::json::array();
    for (const Entry& entry : kEntries) {
        if (offers.empty() || offers.back()["page"] != entry.page.id)
            offers.push_back(
                {{"page", entry.page.id}, {"title", entry.page.title}, {"entries", nlohmann::json::array()}});
        const std::string link = entry.target == kAll ? std::string(kAll) : linkOf(entry, port);
        offers.back()["entries"].push_back({{"link", link}, {"label", entry.label}});
    }
    return offers;
}

}  // namespace zab::site
