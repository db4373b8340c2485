// YouTube: the streams of a catalogue, and the requests for single streams.

#include <algorithm>
#include <iterator>
#include <map>
#include <memory>
#include <optional>

#include "binding/text.h"
#include "binding/utf.h"
#include "media/capture/descriptions.h"
#include "media/capture/handlers/handlers.h"
#include "media/capture/handlers/youtube_entry.h"
#include "media/parsers/stream_urls.h"
#include "web/url.h"

namespace zab {
namespace {

/// The audio address that goes with the videos of an itag, looked for once for each.
class CatalogueAudio {
  public:
    explicit CatalogueAudio(const CYoutubeParser& catalogue) : catalogue_(catalogue) {}

    /// Nothing when the catalogue has no audio for it.
    const std::optional<std::string>& operator()(std::uint32_t itag) {
        const auto [known, isNew] = known_.try_emplace(itag);
        std::u16string url;
        std::uint32_t audioItag = 0;
        if (isNew && catalogue_.pickAudioFor(itag, audioItag, url)) known->second = utf8FromUtf16(url);
        return known->second;
    }

  private:
    const CYoutubeParser& catalogue_;
    std::map<std::uint32_t, std::optional<std::string>> known_;
};

void offerCatalogue(std::unique_ptr<CYoutubeParser> catalogue, CaptureRun& run) {
    if (catalogue->entries().empty()) return;
    CatalogueAudio audioOf(*catalogue);
    for (const YoutubeStreamEntry& stream : catalogue->entries()) {
        if (stream.adaptive != 0 && stream.hasProgressiveTwin != 0) continue;
        ItagDescription itag;
        if (!itagDescribe(stream.itag, {.adaptive = true, .webm = true}, itag)) continue;
        const auto& audio = audioOf(stream.itag);
        if (!audio && !itagDescribe(stream.itag, {.webm = true}, itag)) continue;
        MediaEntry entry = youtubeEntry(run, utf8FromUtf16(stream.url), itag);
        if (stream.adaptive != 0 && audio) entry.secondUrl = *audio;
        if (!run.offer(std::move(entry))) break;
    }
    run.page().change([&](OfferedMedia& media) { media.addCatalogue(std::move(catalogue)); });
}

/// Looks for the stream in a catalogue, and marks it as one that the browser plays.
bool markStream(CYoutubeParser& catalogue, std::u16string_view url) {
    bool isWebM = false, adaptive = false;
    std::uint32_t itag = 0;
    return catalogue.findByUrl(url, true, isWebM, itag) ||
           catalogue.findSameStream(url, isWebM, itag, adaptive);
}

}  // namespace

MediaEntry youtubeEntry(const CaptureRun& run, std::string_view address, const ItagDescription& itag) {
    constexpr LinkScheme kByPairing[] = {LinkScheme::youtubePairing0, LinkScheme::youtubePairing1,
                                         LinkScheme::youtubePairing2};
    constexpr std::size_t kLast = std::size(kByPairing) - 1;
    const LinkScheme scheme = kByPairing[std::min<std::size_t>(run.context().youtubePairing, kLast)];
    MediaEntry entry = run.entry();
    // A link is its scheme alone when there is no address, and is dropped then.
    entry.link = std::string(textOf(scheme)).append(address);
    entry.description = joined({itag.label, itag.container});
    entry.extension = utf8FromUtf16(itag.extension);
    return entry;
}

void offerYouTubeVideoInfo(std::string_view body, CaptureRun& run) {
    auto catalogue = std::make_unique<CYoutubeParser>(utf16FromUtf8(run.pageIdentity().url));
    catalogue->parseVideoInfo(utf16FromUtf8(upToNul(body)));
    offerCatalogue(std::move(catalogue), run);
}

void offerYouTubeWatchPage(std::string_view body, CaptureRun& run) {
    auto catalogue = std::make_unique<CYoutubeParser>(utf16FromUtf8(run.pageIdentity().url));
    catalogue->parsePage(utf16FromUtf8(upToNul(body)));
    offerCatalogue(std::move(catalogue), run);
}

void offerPlayback(CaptureRun& run) {
    const std::string& url = run.context().url;
    const std::u16string wideUrl = utf16FromUtf8(url);
    const auto knows = [&](const auto& catalogue) { return markStream(*catalogue, wideUrl); };
    const auto knowsVideo = [&](const auto& catalogue) { return catalogue->hasSameId(wideUrl); };
    const auto isKnown = [&](const OfferedMedia& media) {
        return std::ranges::any_of(media.catalogues(), knows) ||
               std::ranges::any_of(media.catalogues(), knowsVideo);
    };
    if (run.page().ask(isKnown)) return;
    const std::uint32_t number = entryNumber(queryParameter(url, "itag").value_or(std::string_view{}));
    ItagDescription itag;
    if (!itagDescribe(number, {.webm = true}, itag)) return;
    run.offer(youtubeEntry(run, withoutRange(url), itag));
}

}  // namespace zab
