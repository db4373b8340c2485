// HLS playlists: one entry for each variant of a master playlist and for each further language of its sound, or
// one for a media playlist that no master playlist names. A list without any tag of HLS is a list of links.

#include "media/parsers/hls.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

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

/// One address for each place in which segments lie, the first ones: as many as a page remembers.
std::vector<std::string> placesOf(const CM3UParser& parser, const Playlist& playlist) {
    std::vector<std::string> places;
    std::pair<std::string_view, std::string_view> last;
    for (const CM3UParser::MediaSegment& segment : parser.media.segments) {
        const std::pair place(directoryOf(segment.uri), extensionOf(lastSegmentOf(segment.uri)));
        if (!places.empty() && place == last) continue;
        last = place;
        places.push_back(playlist.absolute(segment.uri));
        if (places.size() == PageStreams::kMostPlaces) break;
    }
    return places;
}

/// `isWhole`: it has its end, and is no window of a live stream, which has no play time.
void offerMediaPlaylist(CM3UParser& parser, const Playlist& playlist, bool isWhole, CaptureRun& run) {
    CM3UParser::Stream stream;
    if (!parser.getNextStream(stream)) return;
    const std::string_view url = run.context().url;
    const std::string_view extension = parser.hasNonTsSegments != 0 ? kMp4Extension : std::string_view{};
    const std::uint32_t duration = isWhole ? entryNumber(stream.durationText) : 0;
    const std::vector<std::string> places = placesOf(parser, playlist);
    bool isKnown = false;
    run.page().change([&](OfferedMedia& media) {
        for (const std::string& place : places) media.streams().addPlace(place);
        isKnown = media.learnFromPlaylist(url, duration, extension) || media.streams().isRendition(url);
    });
    if (isKnown) return;
    MediaEntry entry = run.entry();
    entry.link = std::string(textOf(LinkScheme::hls)).append(url);
    entry.description = stemOf(pathOf(url));
    entry.extension = extension.empty() ? kTsExtension : extension;
    entry.duration = duration;
    entry.isBarePlaylist = true;
    run.offer(std::move(entry));
}

struct Rendition {
    std::string url;
    std::string_view name, language;
    bool isSound;
};

/// The renditions that are playlists of their own and no pictures.
std::vector<Rendition> renditionsOf(const CM3UParser& parser, const Playlist& playlist) {
    std::vector<Rendition> renditions;
    for (const MediaRendition& written : parser.master.renditions) {
        const bool isSound = written.type == "AUDIO";
        if (written.uri.empty() || written.type == "VIDEO") continue;
        renditions.push_back({playlist.absolute(written.uri), written.name, written.language, isSound});
        if (renditions.size() == PageStreams::kMostRenditions) break;
    }
    return renditions;
}

/// The sound that does not play with the pictures anyway, each language once: groups of other qualities name it
/// again.
std::vector<Rendition> furtherSound(const std::vector<Rendition>& renditions,
                                    const std::vector<MediaEntry>& variants) {
    std::vector<std::pair<std::string_view, std::string_view>> known;
    const auto isPlayed = [&](const Rendition& rendition) {
        return std::ranges::find(variants, rendition.url, &MediaEntry::secondUrl) != variants.end();
    };
    for (const Rendition& rendition : renditions)
        if (rendition.isSound && isPlayed(rendition)) known.emplace_back(rendition.name, rendition.language);
    std::vector<Rendition> further;
    for (const Rendition& rendition : renditions) {
        const std::pair named(rendition.name, rendition.language);
        if (!rendition.isSound || std::ranges::find(known, named) != known.end()) continue;
        known.push_back(named);
        further.push_back(rendition);
    }
    return further;
}

MediaEntry soundEntry(const CaptureRun& run, const Rendition& rendition) {
    MediaEntry entry = run.entry();
    entry.link = std::string(textOf(LinkScheme::hls)).append(rendition.url);
    entry.description = joined({rendition.name, rendition.language});
    entry.extension = kTsExtension;
    entry.kind = EntryKind::audio;
    return entry;
}

/// Their playlists are no films by themselves; one that was taken for a film is none any more.
void noteRenditions(const std::vector<Rendition>& renditions, const std::vector<Rendition>& offered,
                    CaptureRun& run) {
    if (renditions.empty()) return;
    run.page().change([&](OfferedMedia& media) {
        for (const Rendition& rendition : renditions) {
            media.streams().addRendition(rendition.url);
            // One that is offered takes over what is known of it.
            if (std::ranges::find(offered, rendition.url, &Rendition::url) == offered.end())
                media.dropBarePlaylist(rendition.url);
        }
    });
}

void offerMasterPlaylist(CM3UParser& parser, const Playlist& playlist, CaptureRun& run) {
    std::vector<MediaEntry> variants;
    CM3UParser::Stream stream;
    while (variants.size() < CaptureRun::kMostOffers && parser.getNextStream(stream)) {
        MediaEntry& entry = variants.emplace_back(variantEntry(run, playlist, stream));
        entry.extension = parser.hasNonTsSegments != 0 ? kMp4Extension : kTsExtension;
    }
    const std::vector<Rendition> renditions = renditionsOf(parser, playlist);
    const std::vector<Rendition> further = furtherSound(renditions, variants);
    noteRenditions(renditions, further, run);
    for (MediaEntry& entry : variants) run.offer(std::move(entry));
    for (const Rendition& rendition : further) run.offer(soundEntry(run, rendition));
}

}  // namespace

void offerHls(std::string_view body, CaptureRun& run) {
    constexpr std::string_view kTagOfHls = "#EXT-X-", kEnd = "#EXT-X-ENDLIST";
    const std::string_view text = upToNul(body);
    if (!contains(text, kTagOfHls)) return offerLinkText(body, run);
    CM3UParser parser;
    if (!parser.parse(body)) return;
    const Playlist playlist(run.context().url, run.context().hlsAsIs);
    if (parser.kind == CM3UParser::kMedia) {
        offerMediaPlaylist(parser, playlist, contains(text, kEnd), run);
    } else {
        offerMasterPlaylist(parser, playlist, run);
    }
}

}  // namespace zab
