// The catalogue and the order in which a text is tried; the reading itself is in youtube_reader.cpp.

#include "media/parsers/youtube_parser.h"

#include <algorithm>
#include <vector>

#include "media/parsers/itags.h"
#include "media/parsers/stream_urls.h"
#include "media/parsers/url_unescape.h"
#include "media/parsers/youtube_reader.h"

namespace zab {
namespace {

constexpr std::u16string_view kStreamMap = u"url_encoded_fmt_stream_map";
constexpr std::u16string_view kAdaptiveMap = u"adaptive_fmts";
constexpr std::u16string_view kAdaptiveMapInPage = u"\"adaptive_fmts\":";

// Deliberate: 46, WebM too, does not count here. Held by YoutubeCatalogue.FindsTheEntryOfALaterRequest.
constexpr bool isWebMItag(std::uint32_t itag) noexcept { return itag >= 43 && itag <= 45; }

/// The first entry that `fits`, or null.
template <class Entries, class Fits>
auto findEntry(Entries& entries, Fits fits) {
    const auto found = std::ranges::find_if(entries, fits);
    return found == entries.end() ? nullptr : &*found;
}

}  // namespace

std::int32_t CYoutubeParser::parsePage(std::u16string_view text) {
    YoutubeReader reader(text, *this);
    readPage(reader);
    if (entries_.empty()) return 0;
    if (auto title = reader.pageTitle()) title_ = std::move(*title);
    return count();
}

std::int32_t CYoutubeParser::parseVideoInfo(std::u16string_view text) {
    YoutubeReader reader(text, *this);
    reader.readReplyMap(kStreamMap, false);
    if (!entries_.empty()) {
        reader.readReplyMap(kAdaptiveMap, true);
    } else {
        reader.readStreamingData();
    }
    markProgressiveTwins();
    if (entries_.empty()) return 0;
    if (auto title = reader.replyTitle()) title_ = std::move(*title);
    return count();
}

CYoutubeParser::Captured CYoutubeParser::parseCaptured(std::u16string_view text,
                                                       std::u16string_view capturedUrl) {
    YoutubeReader reader(text, *this);
    readPage(reader);
    if (auto title = reader.pageTitleInAnyForm()) title_ = std::move(*title);
    if (entries_.empty() && (reader.names(kStreamMap) || reader.names(kAdaptiveMap))) parseVideoInfo(text);

    bool isWebM = false;
    std::uint32_t itag = 0;
    if (findByUrl(capturedUrl, true, isWebM, itag)) return {Match::url, itag};
    if (findSameIdAndItag(capturedUrl, itag)) return {Match::idAndItag, itag};
    return {hasSameId(capturedUrl) ? Match::id : Match::none, 0};
}

void CYoutubeParser::readPage(YoutubeReader& reader) {
    reader.readStreamMap(kStreamMap, false);
    if (!entries_.empty()) {
        reader.readStreamMap(kAdaptiveMapInPage, true);
    } else {
        reader.readStreamingData();
    }
    markProgressiveTwins();
}

std::size_t CYoutubeParser::addEntry(std::u16string url, std::uint32_t itag, bool adaptive) {
    if (const std::uint32_t written = itagInUrl(url); written != 0) itag = written;
    const std::size_t index = entries_.size();
    const YoutubeStreamEntry& entry = entries_.emplace_back(
        YoutubeStreamEntry{.url = std::move(url), .itag = itag, .adaptive = adaptive ? 1u : 0u});
    try {
        byUrl_.try_emplace(entry.url, index);
    } catch (...) {
        entries_.pop_back();
        throw;
    }
    return index;
}

bool CYoutubeParser::findByUrl(std::u16string_view url, bool mark, bool& isWebM, std::uint32_t& itag) {
    const auto found = byUrl_.find(url);
    if (found == byUrl_.end()) return false;
    YoutubeStreamEntry& entry = entries_[found->second];
    itag = entry.itag;
    if (mark) {
        entry.used = 1;
        isWebM = isWebMItag(entry.itag);
    }
    return true;
}

bool CYoutubeParser::findSameStream(std::u16string_view url, bool& isWebM, std::uint32_t& itag,
                                    bool& adaptive) {
    auto* entry = findEntry(entries_, [url](const auto& each) { return sameStream(url, each.url, true); });
    if (entry == nullptr) return false;
    entry->used = 1;
    isWebM = isWebMItag(entry->itag);
    itag = entry->itag;
    adaptive = entry->adaptive != 0;
    return true;
}

bool CYoutubeParser::hasSameStream(std::u16string_view url) const noexcept {
    return findEntry(entries_, [url](const auto& each) { return sameStream(url, each.url, true); }) != nullptr;
}

bool CYoutubeParser::findSameIdAndItag(std::u16string_view url, std::uint32_t& itag) const noexcept {
    const auto* entry = findEntry(entries_, [url](const auto& each) { return sameIdAndItag(url, each.url); });
    if (entry == nullptr) return false;
    itag = entry->itag;
    return true;
}

bool CYoutubeParser::hasSameId(std::u16string_view url) const noexcept {
    return findEntry(entries_, [url](const auto& each) { return sameId(url, each.url); }) != nullptr;
}

bool CYoutubeParser::pickAudioFor(std::uint32_t videoItag, std::uint32_t& audioItag,
                                  std::u16string& audioUrl) const {
    const auto* audio = pickAudio(entries_, videoItag, [](const YoutubeStreamEntry& entry) {
        return entry.adaptive != 0 ? entry.itag : 0;
    });
    if (audio == nullptr) return false;
    audioUrl = audio->url;
    audioItag = audio->itag;
    return true;
}

void CYoutubeParser::markProgressiveTwins() {
    std::vector<std::uint32_t> progressive;
    for (const auto& entry : entries_)
        if (entry.adaptive == 0) progressive.push_back(entry.itag);

    // Asked once for each itag, however many entries share it: few itags are listed, and of an unlisted one the
    // first progressive entry is a twin.
    std::map<std::uint32_t, bool> twinned;
    for (auto& entry : entries_) {
        entry.hasProgressiveTwin = 0;
        if (entry.adaptive == 0) continue;
        const auto [known, isNew] = twinned.try_emplace(entry.itag, false);
        if (isNew) {
            known->second =
                std::ranges::any_of(progressive, [&](std::uint32_t itag) { return hasTwin(itag, entry.itag); });
        }
        entry.hasProgressiveTwin = known->second ? 1 : 0;
    }
}

void CYoutubeParser::unescapeInPlace(std::string& text) { UrlUnescaper().inPlace(text); }

}  // namespace zab
