#include "page/offered_media.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "binding/text.h"
#include "page/media_entry.h"
#include "web/url.h"

namespace zab {
namespace {

/// Compared before the texts: entries of one manifest share long beginnings.
std::size_t hashOf(const MediaEntry& entry) noexcept {
    std::size_t hash = 0;
    for (const std::string* text : {&entry.link, &entry.secondUrl, &entry.extra})
        hash = hash * 31 + std::hash<std::string_view>{}(*text);
    return hash;
}

std::size_t textBytesOf(const MediaEntry& entry) noexcept {
    std::size_t bytes = 0;
    for (const std::string* text : {&entry.link, &entry.secondUrl, &entry.extra, &entry.description,
                                    &entry.extension, &entry.page.url, &entry.page.title, &entry.page.referrer,
                                    &entry.page.cookies, &entry.page.userAgent, &entry.page.namedBy})
        bytes += text->size();
    return bytes;
}

bool isSameStream(const MediaEntry& a, const MediaEntry& b) noexcept {
    return a.link == b.link && a.secondUrl == b.secondUrl && a.extra == b.extra;
}

template <class Number>
void fillIn(Number& known, Number told) noexcept {
    if (known == 0) known = told;
}

std::string_view directoryOf(std::string_view url) noexcept {
    const std::string_view path = beforeQuery(url);
    return path.substr(0, path.rfind('/') + 1);  // npos + 1 is 0
}

}  // namespace

void OfferedMedia::offer(MediaEntry entry) {
    if (addressOf(entry.link).empty()) return;
    const std::size_t hash = hashOf(entry);
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        MediaEntry& held = entries_[i];
        if (hashes_[i] != hash || !isSameStream(held, entry)) continue;
        fillIn(held.size, entry.size);
        fillIn(held.duration, entry.duration);
        fillIn(held.width, entry.width);
        fillIn(held.height, entry.height);
        return;
    }
    const std::size_t bytes = textBytesOf(entry);
    if (entries_.size() >= kMostEntries || bytes > kMostEntryBytes - entryBytes_) return;
    hashes_.reserve(hashes_.size() + 1);  // the two lists grow together or not at all
    entries_.push_back(std::move(entry));
    hashes_.push_back(hash);
    entryBytes_ += bytes;
}

std::vector<MediaEntry> OfferedMedia::takeEntries() noexcept {
    hashes_.clear();
    entryBytes_ = 0;
    return std::exchange(entries_, {});
}

bool OfferedMedia::holdsAddress(std::string_view url) const noexcept {
    return std::ranges::any_of(entries_, [url](const MediaEntry& entry) {
        return addressOf(entry.link) == url || entry.secondUrl == url;
    });
}

bool OfferedMedia::holdsFragmentsOf(std::string_view streamBase) const noexcept {
    return std::ranges::any_of(entries_, [streamBase](const MediaEntry& entry) {
        if (!entry.link.starts_with(textOf(LinkScheme::hdsFragment))) return false;
        const std::string_view held = addressOf(entry.link);
        const std::string_view name = lastSegmentOf(held);
        const auto fragment = name.find(kHdsFragmentPattern);
        if (fragment == std::string_view::npos) return false;
        return held.substr(0, static_cast<std::size_t>(name.data() - held.data()) + fragment) == streamBase;
    });
}

void OfferedMedia::addCatalogue(std::unique_ptr<CYoutubeParser> catalogue) {
    if (catalogues_.size() >= kMostCatalogues) catalogues_.erase(catalogues_.begin());
    catalogues_.push_back(std::move(catalogue));
}

void OfferedMedia::addSegmentPlace(std::string_view segmentUrl) {
    if (segmentUrl.size() > kLongestPlace) return;
    SegmentPlace place{std::string(directoryOf(segmentUrl)), lowered(extensionOf(lastSegmentOf(segmentUrl)))};
    if (std::ranges::find(segmentPlaces_, place) != segmentPlaces_.end()) return;
    if (segmentPlaces_.size() >= kMostSegmentPlaces) segmentPlaces_.erase(segmentPlaces_.begin());
    segmentPlaces_.push_back(std::move(place));
}

bool OfferedMedia::isSegment(std::string_view url) const noexcept {
    const std::string_view extension = extensionOf(lastSegmentOf(url));
    return std::ranges::any_of(segmentPlaces_, [=](const SegmentPlace& place) {
        return place.directory == directoryOf(url) && equalsIgnoringCase(place.extension, extension);
    });
}

}  // namespace zab
