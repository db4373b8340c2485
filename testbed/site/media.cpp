#include "media.h"

#include <algorithm>

#include "content.h"

namespace zab::site {
namespace {

constexpr std::string_view kHttp = "http://";
constexpr std::string_view kHlsType = "application/vnd.apple.mpegurl";

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

constexpr Resource kResources[] = {
    {.target = "/media/film/master.m3u8", .type = kHlsType, .text = kFilm},
    {.target = "/media/film/high.m3u8", .type = kHlsType, .text = kFilmHigh},
    {.target = kFilmSegments[0], .type = "video/mp2t", .size = 7000},
    {.target = kFilmSegments[1], .type = "video/mp2t", .size = 8000},
    {.target = kFilmSegments[2], .type = "video/mp2t", .size = 3000},
    {.target = "/media/play/master.m3u8", .type = kHlsType, .text = kPlay},
    {.target = "/media/play/720/film.m3u8", .type = kHlsType, .text = kPlayParts, .guard = Guard::viewer},
    {.target = "/media/play/en/film.m3u8", .type = kHlsType, .text = kPlayParts, .guard = Guard::viewer},
    {.target = "/media/play/de/film.m3u8", .type = kHlsType, .text = kPlayParts, .guard = Guard::viewer},
    {.target = "/media/play/text/film.m3u8", .type = kHlsType, .text = kPlayText, .guard = Guard::viewer},
    {.target = kPlayFiles[0], .type = "video/mp4", .size = 900, .guard = Guard::viewer},
    {.target = kPlayFiles[1], .type = "video/mp4", .size = 300000, .guard = Guard::viewer},
    {.target = kPlayFiles[2], .type = "video/mp4", .size = 280000, .guard = Guard::viewer},
    {.target = kPlayFiles[3], .type = "audio/mp4", .size = 900, .guard = Guard::viewer},
    {.target = kPlayFiles[4], .type = "audio/mp4", .size = 260000, .guard = Guard::viewer},
    {.target = kPlayFiles[5], .type = "audio/mp4", .size = 90000, .guard = Guard::viewer},
    {.target = "/media/play/trailer.mp4", .type = "video/mp4", .size = 614400},
    {.target = kScript, .type = "application/zip", .guard = Guard::viewer},
    {.target = "/media/lecture/v2/1.m4s", .type = "video/mp4", .size = 300000},
    {.target = "/media/lecture/film.mpd", .type = "application/dash+xml", .text = kDash},
    {.target = "/media/concert.f4m", .type = "application/f4m+xml", .text = kHds},
    {.target = "/media/holiday.mp4", .type = "video/mp4", .size = 1'572'864},
    {.target = "/watch?v=song", .type = "application/json", .text = kWatchPage},
    {.target = "/video/1234", .type = "text/html; charset=utf-8", .text = kPlayer},
};

struct Page {
    int id;
    std::string_view title;
};
constexpr Page kFilmPage{201, "A film in segments"}, kPlayPage{202, "A play in two languages"},
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
    {kPlayPage, "/media/play/master.m3u8", "an HLS playlist of a film on the media host"},
    {kPlayPage, "/media/play/720/film.m3u8", "its picture, as the host's visitor gets it", kMediaHost},
    {kPlayPage, kPlayFiles[1], "a segment as large as a film", kMediaHost},
    {kPlayPage, "/media/play/en/film.m3u8", "its English sound", kMediaHost},
    {kPlayPage, kPlayFiles[4], "a segment of the sound", kMediaHost},
    {kPlayPage, "/media/play/de/film.m3u8", "its German sound", kMediaHost},
    {kPlayPage, "/media/play/text/film.m3u8", "its subtitles, which are no film", kMediaHost},
    {kPlayPage, "/media/play/trailer.mp4", "a file beside the stream"},
    {kLecturePage, "/media/lecture/film.mpd", "a DASH manifest"},
    {kLecturePage, "/media/lecture/v2/1.m4s", "a segment in its folder"},
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
    std::string_view host = {};  // of a target; empty: the site's own name
};
constexpr std::string_view kAll = "!ALL!";
// Each page's in menu order.
constexpr Entry kEntries[] = {
    {kFilmPage, "hlstozab://", "/media/film/high.m3u8", "", "720p bitrate 2500, TS"},
    {kFilmPage, "hlstozab://", "/media/film/low.m3u8", "", "360p bitrate 800, TS"},
    {kFilmPage, "", kAll, "", "Download all"},
    {kPlayPage, "hls2tozab://", "/media/play/720/film.m3u8", "", "720p bitrate 2500, MP4, 11 sec", kMediaHost},
    {kPlayPage, "hls2tozab://", "/media/play/480/film.m3u8", "", "480p bitrate 1200, MP4, 11 sec", kMediaHost},
    {kPlayPage, "", "/media/play/trailer.mp4", "", "trailer.mp4, 600 KB"},
    {kPlayPage, "hlstozab://", "/media/play/de/film.m3u8", "", "Deutsch de, MP4, 11 sec", kMediaHost},
    {kPlayPage, "", kAll, "", "Download all"},
    {kLecturePage, "mpdtozab://", "/media/lecture/film.mpd", "&selected_id=v2",
     "1080p HD bitrate 4000kbps, MP4"},
    {kLecturePage, "mpdtozab://", "/media/lecture/film.mpd", "&selected_id=v1", "480p bitrate 1000kbps, MP4"},
    {kLecturePage, "", kAll, "", "Download all"},
    {kConcertPage, "dhstozab://", "/media/concert.f4m", "", "480p bitrate 900, FLV, 1 min 30 sec"},
    {kHolidayPage, "", "/media/holiday.mp4", "", "holiday.mp4, 1.5 MB"},
    {kSongPage, "ytatozab://", "https://r1.googlevideo.com/videoplayback?id=1&itag=22", "", "720p HD MP4"},
    {kShortPage, "", "https://cdn.example/720.mp4", "", "A short film 720p"},
};

/// What the user chooses, with the files that the download manager must join.
constexpr struct {
    const Entry& entry;
    std::span<const std::string_view> files;
    std::string_view why;
} kChoices[] = {
    {kEntries[0], kFilmSegments, "the user's choice in the menu of the page's button"},
    {kEntries[3], kPlayFiles, "with the cookie of the media host, and not that of the page"},
};

/// Without a name, the site's first one.
std::string originOf(std::string_view host, int port) {
    std::string origin(kHttp);
    origin.append(host.empty() ? "127.0.0.1" : host);
    if (host.empty() || host == kMediaHost) origin.append(":").append(std::to_string(port));
    return origin;
}

std::string linkOf(const Entry& entry, int port) {
    const bool isOfSite = entry.target.front() == '/';
    return std::string(entry.scheme) + (isOfSite ? originOf(entry.host, port) : "") +
           std::string(entry.target) + std::string(entry.behind);
}

/// What a visitor with the cookies of the host gets.
std::string bytesOf(std::string_view target, int port) {
    const auto* row = std::ranges::find(kResources, target, &Resource::target);
    const std::string host = originOf({}, port).substr(kHttp.size());
    return replyTo(*row, {[&](std::string_view name) {
               return name == "Host" ? host : name == "Cookie" ? std::string(kViewerCookie) : "";
           }})
        .body;
}

std::string joined(std::span<const std::string_view> files, int port) {
    std::string bytes;
    for (const std::string_view file : files) bytes += bytesOf(file, port);
    return bytes;
}

nlohmann::json pageOf(const Page& page, int port) {
    return {{"id", page.id}, {"url", originOf({}, port) + "/"}, {"title", page.title}, {"shown", true}};
}

nlohmann::json exchangeOf(const Load& load, int port) {
    const std::string url = originOf(load.host, port) + std::string(load.target);
    const bool isOther = !load.host.empty() && load.host != kMediaHost;
    nlohmann::json exchange{{"name", "media " + std::string(load.target)},
                            {"url", url},
                            {"load", "embedded"},
                            {"headers", {{"User-Agent", kUserAgent}, {"Referer", originOf({}, port) + "/"}}},
                            {"page", pageOf(load.page, port)},
                            {"expected",
                             {{{"url", url},
                               {"outcome", "browser"},
                               {"browserSha256", sha256Of(bytesOf(load.target, port))},
                               {"shown", true},
                               {"why", load.why}}}}};
    if (isOther)
        exchange["connect"] = "127.0.0.1:" + std::to_string(port);
    else
        exchange["headers"]["Cookie"] = load.host.empty() ? kSessionCookie : kViewerCookie;
    return exchange;
}

/// What the user does on a page, and the download that must come of it.
nlohmann::json actOf(std::string_view act, std::string_view what, const std::string& url, const Page& page,
                     const std::string& bytes, std::string_view why, int port) {
    return {{"name", std::string(act) + " " + url},
            {act, what},
            {"url", url},
            {"cookies", kSessionCookie},
            {"page", pageOf(page, port)},
            {"expected",
             {{{"url", url},
               {"outcome", "transfer"},
               {"flags", 0},
               {"sha256", sha256Of(bytes)},
               {"shown", true},
               {"why", why}}}}};
}

}  // namespace

std::span<const Resource> mediaResources() noexcept { return kResources; }

nlohmann::json mediaExchanges(int port) {
    nlohmann::json exchanges = nlohmann::json::array();
    for (const Load& load : kLoads) exchanges.push_back(exchangeOf(load, port));
    for (const auto& choice : kChoices) {
        const std::string link = linkOf(choice.entry, port);
        exchanges.push_back(
            actOf("chooses", link, link, choice.entry.page, joined(choice.files, port), choice.why, port));
    }
    const std::string link = originOf(kMediaHost, port) + std::string(kScript);
    exchanges.push_back(actOf("downloadsAll", "<a href=\"" + link + "\">The script</a>", link, kPlayPage,
                              bytesOf(kScript, port), "a link to the other host, without the page's cookie",
                              port));
    return exchanges;
}

nlohmann::json mediaOffers(int port) {
    nlohmann::json offers = nlohmann::json::array();
    for (const Entry& entry : kEntries) {
        if (offers.empty() || offers.back()["page"] != entry.page.id)
            offers.push_back(
                {{"page", entry.page.id}, {"title", entry.page.title}, {"entries", nlohmann::json::array()}});
        offers.back()["entries"].push_back({{"link", linkOf(entry, port)}, {"label", entry.label}});
    }
    return offers;
}

}  // namespace zab::site
