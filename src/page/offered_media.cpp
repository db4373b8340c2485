#include "page/offered_media.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "page/media_entry.h"

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

}  // namespace

std::size_t OfferedMedia::bareAt(std::string_view address) const noexcept {
    const auto found = std::ranges::find_if(entries_, [address](const MediaEntry& entry) {
        return entry.isBarePlaylist && addressOf(entry.link) == address;
    });
    return static_cast<std::size_t>(found - entries_.begin());
}

void OfferedMedia::replace(std::size_t index, MediaEntry entry) {
    MediaEntry& held = entries_[index];
    fillIn(entry.duration, held.duration);
    if (held.extension == kMp4Extension) entry.extension = held.extension;
    const std::size_t bytes = entryBytes_ - textBytesOf(held) + textBytesOf(entry);
    if (bytes > kMostEntryBytes) return;
    entryBytes_ = bytes;
    hashes_[index] = hashOf(entry);
    held = std::move(entry);
}

void OfferedMedia::remove(std::size_t index) noexcept {
    entryBytes_ -= textBytesOf(entries_[index]);
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(index));
    hashes_.erase(hashes_.begin() + static_cast<std::ptrdiff_t>(index));
}

bool OfferedMedia::makeRoom(const MediaEntry& entry) {
    if (entries_.size() < kMostEntries) return true;
    const auto plain = std::ranges::find_if_not(entries_, isStream);
    if (!isStream(entry) || plain == entries_.end()) return false;
    remove(static_cast<std::size_t>(plain - entries_.begin()));
    return true;
}

void OfferedMedia::offer(MediaEntry entry) {
    const std::string_view address = addressOf(entry.link);
    if (address.empty()) return;
    if (isStream(entry) && !entry.isBarePlaylist)
        if (const std::size_t bare = bareAt(address); bare != entries_.size())
            return replace(bare, std::move(entry));
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
    if (entryBytes_ + bytes > kMostEntryBytes || !makeRoom(entry)) return;
    hashes_.reserve(hashes_.size() + 1);  // the two lists grow together or not at all
    entries_.push_back(std::move(entry));
    hashes_.push_back(hash);
    entryBytes_ += bytes;
}

bool OfferedMedia::learnFromPlaylist(std::string_view url, std::uint32_t duration, std::string_view extension) {
    bool isPlayed = false;
    for (MediaEntry& entry : entries_) {
        if (!isStream(entry) || (addressOf(entry.link) != url && entry.secondUrl != url)) continue;
        isPlayed = true;
        fillIn(entry.duration, duration);
        if (!extension.empty()) {
            entryBytes_ = entryBytes_ - entry.extension.size() + extension.size();
            entry.extension = extension;
        }
    }
    return isPlayed;
}

void OfferedMedia::dropBarePlaylist(std::string_view url) noexcept {
    if (const std::size_t bare = bareAt(url); bare != entries_.size()) remove(bare);
}

std::vector<MediaEntry> OfferedMedia::takeEntries() noexcept {
    hashes_.clear();
    entryBytes_ = 0;
    return std::exchange(entries_, {});
}

void OfferedMedia::addCatalogue(std::unique_ptr<CYoutubeParser> catalogue) {
    if (catalogues_.size() >= kMostCatalogues) catalogues_.erase(catalogues_.begin());
    catalogues_.push_back(std::move(catalogue));
}

}  // namespace zab
