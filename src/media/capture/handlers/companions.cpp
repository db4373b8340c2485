// What the download manager's libraries recognise: DASH manifests, and media of any kind.

#include <algorithm>

#include "binding/text.h"
#include "media/capture/descriptions.h"
#include "media/capture/handlers/handlers.h"
#include "media/parsers/mp4.h"
#include "media/parsers/stream_urls.h"
#include "page/media_entry.h"

namespace zab {
namespace {

bool isDashManifest(std::string_view body) noexcept {
    constexpr std::size_t kWithinBytes = 1'000;
    const std::string_view head = upToNul(body).substr(0, kWithinBytes);
    return contains(head, "<MPD") || contains(head, "<mpd");
}

/// Whether a manifest of HDS begins here: its root element's name space stands in the first bytes.
bool isF4mManifest(std::string_view body) noexcept {
    constexpr std::size_t kHeadBytes = 87;
    constexpr std::string_view kRoot = "<manifest xmlns=";
    constexpr std::string_view kNamespaces[] = {"\"http://ns.adobe.com/f4m/", "'http://ns.adobe.com/f4m/"};
    if (body.size() < kHeadBytes) return false;
    const std::string_view head = body.substr(0, kHeadBytes);
    const auto root = head.find(kRoot);
    if (root == std::string_view::npos) return false;
    const std::string_view value = head.substr(root + kRoot.size());
    return value.starts_with(kNamespaces[0]) || value.starts_with(kNamespaces[1]);
}

std::string dashDescription(const DashStream& stream, bool isVideo) {
    constexpr std::uint32_t kHdHeight = 720;
    const std::string size = stream.size != 0 ? std::to_string(stream.size) : "";
    std::string height, rate;
    if (isVideo && stream.height != 0) height = std::to_string(stream.height) + 'p';
    if (!height.empty() && stream.height >= kHdHeight) height += " HD";
    if (stream.bitrate != 0) rate = "bitrate " + std::to_string(stream.bitrate >> 10) + "kbps";
    return joined({size, height, rate});
}

/// A play time and a height in the file itself count for more than the sniffer's.
void readMp4Facts(std::string_view body, MediaEntry& entry) {
    CMp4DashReader reader;
    reader.read({reinterpret_cast<const std::uint8_t*>(body.data()), body.size()});
    if (const auto seconds = reader.seconds(); seconds && *seconds != 0) entry.duration = *seconds;
    if (reader.height != 0) entry.height = reader.height;
}

}  // namespace

void offerDash(std::string_view body, CaptureRun& run) {
    const CaptureContext& context = run.context();
    if (!isDashManifest(body)) return;
    run.page().change(
        [&](OfferedMedia& media) { noteDashPlaces(context.url, upToNul(body), media.streams()); });
    if (context.companions == nullptr) return;
    const auto streams = context.companions->dashStreams(context.url, upToNul(body));
    if (!streams) return;
    const bool isVideo = !streams->video.empty();
    const std::string_view scheme = textOf(isVideo ? LinkScheme::dash : LinkScheme::dashAudio);
    for (const DashStream& stream : isVideo ? streams->video : streams->audio) {
        MediaEntry entry = run.entry();
        entry.link = std::string(scheme).append(context.url).append("&selected_id=").append(stream.id);
        entry.description = dashDescription(stream, isVideo);
        entry.extension = kMp4Extension;
        entry.kind = isVideo ? EntryKind::video : EntryKind::audio;
        entry.size = stream.size;
        entry.height = isVideo ? stream.height : 0;
        entry.bitrate = stream.bitrate;
        if (!run.offer(std::move(entry))) return;
    }
}

void offerSniffed(std::string_view body, CaptureRun& run) {
    const CaptureContext& context = run.context();
    if (context.companions == nullptr) return;
    const SniffedContent sniffed = context.companions->sniff(body);
    if (sniffed.verdict != SniffedContent::Verdict::recognised) return;
    if (equalsIgnoringCase(sniffed.extension, "xml")) {
        if (isF4mManifest(body)) return offerHds(body, run);
        if (isYouTubeManifest(context.url)) offerYouTubeDash(body, run);
        return;
    }
    if (isPartOfStream(run)) return;
    MediaEntry entry = run.plainEntry(withoutRange(context.url));
    entry.extension = lowered(sniffed.extension);
    entry.kind = entryKindOf(entry.extension);
    const std::int64_t length = context.contentLength;
    entry.size =
        sniffed.size != 0 ? sniffed.size : static_cast<std::uint64_t>(std::max<std::int64_t>(length, 0));
    entry.duration = sniffed.duration;
    entry.width = sniffed.width;
    entry.height = sniffed.height;
    entry.bitrate = sniffed.bitrate;
    if (entry.extension == "mov" || entry.extension == kMp4Extension) readMp4Facts(body, entry);
    run.offer(std::move(entry));
}

}  // namespace zab
