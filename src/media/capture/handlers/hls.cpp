// HLS playlists: one entry for each variant of a master playlist, or one for a media playlist.

#include "media/parsers/hls.h"
#include "binding/text.h"
#include "media/capture/descriptions.h"
#include "media/capture/handlers/handlers.h"
#include "page/media_entry.h"
#include "web/url.h"
#include "web/url_resolve.h"

namespace zab {
namespace {

/// This host signs the addresses in its playlists as they are written.
constexpr std::string_view kAsIsPlaylists = "https://strm.yandex.ru";

class Playlist {
  public:
    Playlist(std::string_view url, bool asIs) : url_(url), asIs_(asIs || url.starts_with(kAsIsPlaylists)) {}

    [[nodiscard]] std::string absolute(std::string_view uri) const {
        return asIs_ ? std::string(uri) : resolveUrl(url_, uri);
    }

  private:
    std::string_view url_;
    bool asIs_;
};

/// The last segment of a path, as written and without its extension.
std::string_view stemOf(std::string_view path) noexcept {
    const std::string_view name = path.substr(path.rfind('/') + 1);  // npos + 1 is 0
    return name.substr(0, name.rfind('.'));
}

/// Two blanks stand before the number, and no unit behind it.
std::string bitrateText(std::uint32_t bitsPerSecond) {
    return bitsPerSecond == 0 ? std::string{} : "bitrate  " + std::to_string(bitsPerSecond / 1024);
}

MediaEntry variantEntry(const CaptureRun& run, const Playlist& playlist, const CM3UParser::Stream& stream) {
    MediaEntry entry = run.entry();
    const bool hasAudio = !stream.audioUri.empty();
    entry.link = textOf(hasAudio ? LinkScheme::hlsWithAudio : LinkScheme::hls);
    entry.link += playlist.absolute(stream.uri);
    if (hasAudio) entry.secondUrl = playlist.absolute(stream.audioUri);
    entry.height = entryNumber(stream.height);
    entry.bitrate = static_cast<std::uint32_t>(leadingDigits(stream.bandwidth, INT32_MAX).value_or(0));
    const std::string name = stream.height.empty() ? std::string(stemOf(splitReference(stream.uri).path))
                                                   : std::string(stream.height) + 'p';
    entry.description = joined({name, bitrateText(entry.bitrate)});
    return entry;
}

MediaEntry mediaEntry(const CaptureRun& run, std::string_view url, const CM3UParser::Stream& stream) {
    MediaEntry entry = run.entry();
    entry.link = std::string(textOf(LinkScheme::hls)).append(url);
    entry.description = stemOf(pathOf(url));
    entry.duration = entryNumber(stream.durationText);
    return entry;
}

}  // namespace

void offerHls(std::string_view body, CaptureRun& run) {
    CM3UParser parser;
    if (!parser.parse(body)) return;
    const std::string_view url = run.context().url;
    const Playlist playlist(url, run.context().hlsAsIs);
    const bool isMedia = parser.kind == CM3UParser::kMedia;
    if (isMedia && !parser.media.segments.empty()) {
        const std::string segment = playlist.absolute(parser.media.segments[0].uri);
        run.page().change([&](OfferedMedia& media) { media.addSegmentPlace(segment); });
    }
    const auto isHeld = [url](const OfferedMedia& media) { return media.holdsAddress(url); };
    if (isMedia && run.page().ask(isHeld)) return;

    const std::string_view extension = parser.hasNonTsSegments != 0 ? "mp4" : "ts";
    CM3UParser::Stream stream;
    while (parser.getNextStream(stream)) {
        MediaEntry entry = isMedia ? mediaEntry(run, url, stream) : variantEntry(run, playlist, stream);
        entry.extension = extension;
        if (!run.offer(std::move(entry))) return;
    }
}

}  // namespace zab
