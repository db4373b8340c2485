#include <memory>

#include "bench/bench.h"
#include "binding/utf.h"
#include "media/parsers/stream_urls.h"
#include "media/parsers/youtube_parser.h"

namespace {

using zabbench::repeated;

std::function<void()> parsePage(const std::string& body) {
    return [text = std::make_shared<std::u16string>(zab::utf16FromUtf8(body))] {
        zab::CYoutubeParser().parsePage(*text);
    };
}

std::function<void()> parseReply(const std::string& body) {
    return [text = std::make_shared<std::u16string>(zab::utf16FromUtf8(body))] {
        zab::CYoutubeParser().parseVideoInfo(*text);
    };
}

/// The body as a URL, compared with itself.
std::function<void()> compareUrls(const std::string& body) {
    return [url = std::make_shared<std::u16string>(zab::utf16FromUtf8(body))] {
        (void)zab::sameStream(*url, *url, true);
    };
}

/// A watch page as it is served: scripts and data, one player response in the middle, its title behind it.
std::string watchPage(std::size_t n) {
    const std::string filler = repeated(
        "{\"videoId\":\"v%\",\"thumbnail\":{\"thumbnails\":[{\"url\":\"https://i.example.com/vi/%/hq.jpg\"}]},"
        "\"viewCountText\":{\"simpleText\":\"% views\"},\"trackingParams\":\"CBAQ%\"},\n",
        n / 2);
    return filler + "{\"streamingData\":{\"adaptiveFormats\":[" +
           repeated(
               "{\"itag\":137,\"url\":\"https://r%.example.com/videoplayback?expire=1700000000\\u0026ei=a%"
               "\\u0026id=o-A%\\u0026itag=137\\u0026mime=video\\u0026signature=A.B\",\"width\":1920},",
               30) +
           "]},\"videoDetails\":{\"title\":\"A song\",\"author\":\"B\"}}" + filler;
}

std::string differentStreams(std::size_t n) {
    return "\"url_encoded_fmt_stream_map\":\"" + repeated("url=http://h/videoplayback?id=%\\u0026itag=22,", n) +
           '"';
}
std::string equalStreams(std::size_t n) {
    return "\"url_encoded_fmt_stream_map\":\"" + repeated("url=http://h/videoplayback\\u0026itag=22,", n) + '"';
}
std::string adaptiveWithoutTwins(std::size_t n) {
    return "\"url_encoded_fmt_stream_map\":\"" + repeated("url=videoplayback?%,", n) +
           "\",\"adaptive_fmts\":\"" + repeated("url=videoplayback?a%\\u0026itag=264,", n) + '"';
}
std::string markersWithoutValues(std::size_t n) { return repeated("url_encoded_fmt_stream_map", n) + '"'; }
std::string ampersandsWithoutKeys(std::size_t n) {
    return "\"url_encoded_fmt_stream_map\":\"url=videoplayback" + repeated("\\u0026x", n) + '"';
}
std::string urlsWithoutEnd(std::size_t n) { return "\"streamingData\":" + repeated("http", n); }
std::string streamingUrls(std::size_t n) {
    return "\"streamingData\":" + repeated("\"http%videoplayback\"", n);
}
std::string replyMaps(std::size_t n) { return repeated("url_encoded_fmt_stream_map=url=videoplayback?%&", n); }
std::string parametersOfOneEnding(std::size_t n) {
    return "http://h/v?" + repeated("%aaaaaaaaaaaaaaaaaaaaaaaaaaaa&", n);
}

const zabbench::Case kCases[] = {
    {"youtube", "watch page of 2 MB", watchPage, 11'000, parsePage},
    {"youtube", "different streams", differentStreams, 20'000, parsePage},
    {"youtube", "equal streams", equalStreams, 20'000, parsePage},
    {"youtube", "adaptive without twins", adaptiveWithoutTwins, 20'000, parsePage},
    {"youtube", "markers without values", markersWithoutValues, 50'000, parsePage},
    {"youtube", "ampersands without keys", ampersandsWithoutKeys, 100'000, parsePage},
    {"youtube", "URLs without end", urlsWithoutEnd, 250'000, parsePage},
    {"youtube", "streaming URLs", streamingUrls, 20'000, parsePage},
    {"youtube", "maps of a reply", replyMaps, 20'000, parseReply},
    {"youtube", "parameters of one ending", parametersOfOneEnding, 20'000, compareUrls},
};

}  // namespace
