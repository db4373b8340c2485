#include "bench/bench.h"
#include "media/parsers/hls.h"

namespace {

using zabbench::repeated;

std::function<void()> parsePlaylist(const std::string& body) {
    return [&body] { zab::CM3UParser().parse(body); };
}

/// The streams too: their audio groups are looked up.
std::function<void()> walkPlaylist(const std::string& body) {
    return [&body] {
        zab::CM3UParser parser;
        parser.parse(body);
        zab::CM3UParser::Stream stream;
        while (parser.getNextStream(stream)) {
        }
    };
}

std::string mediaPlaylist(std::size_t n) {
    return "#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:4\n#EXT-X-MEDIA-SEQUENCE:0\n#EXT-X-PLAYLIST-TYPE:"
           "VOD\n" +
           repeated(
               "#EXTINF:4.004,\n"
               "https://media.example.com/vod/2024/movie/video_1080p_h264/segment_%.ts"
               "?token=4f2b9c7a1e5d8f60&expires=1700000000&n=%\n",
               n) +
           "#EXT-X-ENDLIST\n";
}

std::string masterPlaylist(std::size_t n) {
    return "#EXTM3U\n#EXT-X-VERSION:4\n" +
           repeated(
               "#EXT-X-MEDIA:TYPE=AUDIO,GROUP-ID=\"audio-%\",LANGUAGE=\"en\",NAME=\"English\",DEFAULT=YES,"
               "AUTOSELECT=YES,URI=\"audio/%/playlist.m3u8\"\n",
               n / 10) +
           repeated(
               "#EXT-X-STREAM-INF:PROGRAM-ID=1,BANDWIDTH=%1280000,AVERAGE-BANDWIDTH=1200000,"
               "CODECS=\"avc1.64001f,mp4a.40.2\",RESOLUTION=1280x720,FRAME-RATE=29.970,AUDIO=\"audio-1\"\n"
               "https://media.example.com/vod/2024/movie/variant_%/playlist.m3u8?token=4f2b9c7a1e5d\n",
               n);
}

std::string variantsWithoutUris(std::size_t n) {
    return repeated("#EXT-X-STREAM-INF:CODECS=\"a,b\",AUDIO=g\n", n);
}
std::string oneAttributeList(std::size_t n) {
    return "#EXT-X-STREAM-INF:" + repeated("A=%,CODECS=\"a,b\",", n) + "\nu";
}
std::string unclosedQuotes(std::size_t n) { return repeated("#EXT-X-MEDIA:A,B=\"c\"\"d,e\"f,g=\"\n", n); }
std::string shortestSegments(std::size_t n) { return repeated("#EXTINF:\na\n", n); }
std::string mapsOnly(std::size_t n) { return repeated("#EXT-X-MAP:URI=\n", n); }
std::string lineFeedsBehindVariant(std::size_t n) { return "#EXT-X-STREAM-INF:\n" + std::string(n, '\n'); }
std::string longNumber(std::size_t n) { return "#EXTINF:0." + std::string(n, '1') + "\na\n"; }
std::string groupsOfAnEqualStart(std::size_t n) {
    const std::string start(100, 'g');
    return repeated("#EXT-X-MEDIA:URI=u,GROUP-ID=" + start + "%\n", n) +
           repeated("#EXT-X-STREAM-INF:AUDIO=" + start + "%x\nu\n", n);
}

const zabbench::Case kCases[] = {
    {"hls", "media playlist", mediaPlaylist, 24'000, parsePlaylist},
    {"hls", "master playlist", masterPlaylist, 2'000, walkPlaylist},
    {"hls", "variants without URIs", variantsWithoutUris, 20'000, walkPlaylist},
    {"hls", "one attribute list", oneAttributeList, 100'000, walkPlaylist},
    {"hls", "quotes across commas", unclosedQuotes, 50'000, walkPlaylist},
    {"hls", "shortest segments", shortestSegments, 200'000, parsePlaylist},
    {"hls", "maps only", mapsOnly, 100'000, parsePlaylist},
    {"hls", "line feeds", lineFeedsBehindVariant, 1'000'000, parsePlaylist},
    {"hls", "number of 1 MB", longNumber, 1'000'000, parsePlaylist},
    {"hls", "groups of an equal start", groupsOfAnEqualStart, 10'000, walkPlaylist},
};

}  // namespace
