#include "media.h"

namespace zab::site {
namespace {

constexpr std::string_view kScript = "/media/play/script.zip";
constexpr std::string_view kFilm =
    "#EXTM3U\n#EXT-X-STREAM-INF:BANDWIDTH=819200,RESOLUTION=640x360\nlow.m3u8\n"
    "#EXT-X-STREAM-INF:BANDWIDTH=2560000,RESOLUTION=1280x720\nhigh.m3u8\n";
constexpr std::string_view kFilmHigh =
    "#EXTM3U\n#EXT-X-TARGETDURATION:4\n#EXTINF:4.0,\nhigh-1.ts\n#EXTINF:4.0,\nhigh-2.ts\n#EXTINF:2.5,\n"
    "high-3.ts\n#EXT-X-ENDLIST\n";
constexpr std::string_view kFilmSegments[] = {"/media/film/high-1.ts", "/media/film/high-2.ts",
                                              "/media/film/high-3.ts"};
// Everything that it names lies on the other host.
constexpr std::string_view kPlay =
    "#EXTM3U\n#EXT-X-MEDIA:TYPE=AUDIO,GROUP-ID=\"s\",NAME=\"English\",LANGUAGE=\"en\",DEFAULT=YES,"
    "URI=\"{media}/media/play/en/film.m3u8\"\n#EXT-X-MEDIA:TYPE=AUDIO,GROUP-ID=\"s\",NAME=\"Deutsch\","
    "LANGUAGE=\"de\",URI=\"{media}/media/play/de/film.m3u8\"\n#EXT-X-MEDIA:TYPE=SUBTITLES,GROUP-ID=\"t\","
    "NAME=\"Deutsch\",LANGUAGE=\"de\",URI=\"{media}/media/play/text/film.m3u8\"\n"
    "#EXT-X-STREAM-INF:BANDWIDTH=1228800,RESOLUTION=854x480,AUDIO=\"s\",SUBTITLES=\"t\"\n"
    "{media}/media/play/480/film.m3u8\n"
    "#EXT-X-STREAM-INF:BANDWIDTH=2560000,RESOLUTION=1280x720,AUDIO=\"s\",SUBTITLES=\"t\"\n"
    "{media}/media/play/720/film.m3u8\n";
constexpr std::string_view kPlayParts =
    "#EXTM3U\n#EXT-X-TARGETDURATION:6\n#EXT-X-MAP:URI=\"map.mp4\"\n#EXTINF:6.0,\n1.mp4\n#EXTINF:5.5,\n2.mp4\n"
    "#EXT-X-ENDLIST\n";
constexpr std::string_view kPlayText = "#EXTM3U\n#EXTINF:11.5,\n1.vtt\n#EXT-X-ENDLIST\n";
constexpr std::string_view kPlayFiles[] = {"/media/play/720/map.mp4", "/media/play/720/1.mp4",
                                           "/media/play/720/2.mp4",   "/media/play/en/map.mp4",
                                           "/media/play/en/1.mp4",    "/media/play/en/2.mp4"};
constexpr std::string_view kDash =
    "<?xml version=\"1.0\"?>\n<MPD xmlns=\"urn:mpeg:dash:schema:mpd:2011\"><Period>\n"
    "<AdaptationSet contentType=\"video\"><SegmentTemplate "
    "media=\"$RepresentationID$/$Number$.m4s\"/><Representation id=\"v1\" height=\"480\" "
    "bandwidth=\"1024000\"/>"
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

/// What the media host gives to its own visitor.
constexpr Resource own(std::string_view target, std::string_view type, std::size_t size) {
    return {.target = target, .type = type, .size = size, .guard = Guard::viewer};
}
constexpr Resource playlist(std::string_view target, std::string_view text, Guard guard = Guard::none) {
    return {.target = target, .type = "application/vnd.apple.mpegurl", .text = text, .guard = guard};
}

constexpr Resource kResources[] = {
    playlist("/media/film/master.m3u8", kFilm),
    playlist("/media/film/high.m3u8", kFilmHigh),
    {.target = kFilmSegments[0], .type = "video/mp2t", .size = 7000},
    {.target = kFilmSegments[1], .type = "video/mp2t", .size = 8000},
    {.target = kFilmSegments[2], .type = "video/mp2t", .size = 3000},
    playlist("/media/play/master.m3u8", kPlay),
    playlist("/media/play/720/film.m3u8", kPlayParts, Guard::viewer),
    playlist("/media/play/en/film.m3u8", kPlayParts, Guard::viewer),
    playlist("/media/play/de/film.m3u8", kPlayParts, Guard::viewer),
    playlist("/media/play/text/film.m3u8", kPlayText, Guard::viewer),
    own(kPlayFiles[0], "video/mp4", 900),
    own(kPlayFiles[1], "video/mp4", 300000),
    own(kPlayFiles[2], "video/mp4", 280000),
    own(kPlayFiles[3], "audio/mp4", 900),
    own(kPlayFiles[4], "audio/mp4", 260000),
    own(kPlayFiles[5], "audio/mp4", 90000),
    {.target = "/media/play/trailer.mp4", .type = "video/mp4", .size = 614400},
    own(kScript, "application/zip", 4000),
    {.target = "/media/lecture/v2/1.m4s", .type = "video/mp4", .size = 300000},
    {.target = "/media/lecture/film.mpd", .type = "application/dash+xml", .text = kDash},
    {.target = "/media/concert.f4m", .type = "application/f4m+xml", .text = kHds},
    {.target = "/media/holiday.mp4", .type = "video/mp4", .size = 1'572'864},
    {.target = "/watch?v=song", .type = "application/json", .text = kWatchPage},
    {.target = "/video/1234", .type = "text/html; charset=utf-8", .text = kPlayer},
};

// Each page's in menu order.
constexpr Entry kEntries[] = {
    {kFilmPage, "hlstozab://{site}/media/film/high.m3u8", "720p bitrate 2500, TS"},
    {kFilmPage, "hlstozab://{site}/media/film/low.m3u8", "360p bitrate 800, TS"},
    {kFilmPage, "!ALL!", "Download all"},
    {kPlayPage, "hls2tozab://{media}/media/play/720/film.m3u8", "720p bitrate 2500, MP4, 11 sec"},
    {kPlayPage, "hls2tozab://{media}/media/play/480/film.m3u8", "480p bitrate 1200, MP4, 11 sec"},
    {kPlayPage, "{site}/media/play/trailer.mp4", "trailer.mp4, 600 KB"},
    {kPlayPage, "hlstozab://{media}/media/play/de/film.m3u8", "Deutsch de, MP4, 11 sec"},
    {kPlayPage, "!ALL!", "Download all"},
    {kLecturePage, "mpdtozab://{site}/media/lecture/film.mpd&selected_id=v2", "1080p HD bitrate 4000kbps, MP4"},
    {kLecturePage, "mpdtozab://{site}/media/lecture/film.mpd&selected_id=v1", "480p bitrate 1000kbps, MP4"},
    {kLecturePage, "!ALL!", "Download all"},
    {kConcertPage, "dhstozab://{site}/media/concert.f4m", "480p bitrate 900, FLV, 1 min 30 sec"},
    {kHolidayPage, "{site}/media/holiday.mp4", "holiday.mp4, 1.5 MB"},
    {kSongPage, "ytatozab://https://r1.googlevideo.com/videoplayback?id=1&itag=22", "720p HD MP4"},
    {kShortPage, "https://cdn.example/720.mp4", "A short film 720p"},
};

constexpr Act kActs[] = {
    {kFilmPage, "chooses", kEntries[0].link, kEntries[0].link, kFilmSegments,
     "the user's choice in the menu of the page's button"},
    {kPlayPage, "chooses", kEntries[3].link, kEntries[3].link, kPlayFiles,
     "with the cookie of the media host, and not that of the page"},
    {kPlayPage,
     "downloadsAll",
     "<a href=\"{media}/media/play/script.zip\">The script</a>",
     "{media}/media/play/script.zip",
     {&kScript, 1},
     "a link to the other host, without the page's cookie"},
};

}  // namespace

std::span<const Resource> mediaResources() noexcept { return kResources; }
std::span<const Entry> mediaEntries() noexcept { return kEntries; }
std::span<const Act> mediaActs() noexcept { return kActs; }

}  // namespace zab::site
