#include <algorithm>

#include "bench/bench.h"
#include "media/capture/body_capture.h"

namespace {

using zab::MediaKind;
using zabbench::repeated;

constexpr std::size_t kChunk = 1'400;  // what one packet brings

/// A body of unknown length: each byte that the listener asks for, then its end.
template <MediaKind Kind>
void read(const std::string& body, std::size_t chunk) {
    zab::CaptureContext context;
    context.url = "https://media.example.com/film/list?id=1";
    zab::LocalPage page;
    zab::BodyCapture listener(Kind, context);
    for (std::string_view rest = body; !rest.empty() && listener.wantsMore();) {
        const bool isComplete = listener.add(rest.substr(0, chunk));
        rest.remove_prefix(std::min(chunk, rest.size()));
        if (isComplete) page.take(listener.finish(page));
    }
    page.take(listener.finish(page));
}

template <MediaKind Kind>
std::function<void()> atOnce(const std::string& body) {
    return [&body] { read<Kind>(body, body.size()); };
}

template <MediaKind Kind>
std::function<void()> inChunks(const std::string& body) {
    return [&body] { read<Kind>(body, kChunk); };
}

std::string playlist(std::size_t n) {
    return "#EXTM3U\n" +
           repeated("#EXTINF:4.0,\nhttps://media.example.com/film/1080p/segment_%.ts?token=4f2b\n", n) +
           "#EXT-X-ENDLIST\n";
}

std::string watchPage(std::size_t n) {
    return repeated("{\"videoId\":\"v%\",\"thumbnail\":{\"url\":\"https://i.example.com/vi/%/hq.jpg\"}},\n",
                    n) +
           "{\"streamingData\":{\"formats\":[{\"itag\":22,\"url\":\"https://r.example.com/videoplayback?id=1"
           "\\u0026itag=22\"}]},\"videoDetails\":{\"title\":\"A song\"}}";
}

std::string pageOfVideos(std::size_t n) {
    return repeated("<div class=\"story\" id=\"s%\"><p>Somebody shared a video with a friend</p></div>\n", n) +
           "videoData:[{hd_src:\"https:\\/\\/v.example.com\\/hd.mp4\",sd_src:\"https:\\/\\/v.example.com\\/"
           "sd.mp4\"}]";
}

// Bodies below their caps at n, so that all of them is read; at 2n the cap may end it.
const zabbench::Case kCases[] = {
    {"capture", "playlist at once", playlist, 12'500, atOnce<MediaKind::hls>},
    {"capture", "playlist in chunks", playlist, 12'500, inChunks<MediaKind::hls>},
    {"capture", "watch page at once", watchPage, 12'500, atOnce<MediaKind::youtubeWatchPage>},
    {"capture", "watch page in chunks", watchPage, 12'500, inChunks<MediaKind::youtubeWatchPage>},
    {"capture", "page of videos at once", pageOfVideos, 12'500, atOnce<MediaKind::facebook>},
    {"capture", "page of videos in chunks", pageOfVideos, 12'500, inChunks<MediaKind::facebook>},
};

}  // namespace
