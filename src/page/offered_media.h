// What is known of one page's media: its entries, and what later responses of the page are compared with.
//
// Every list is bounded, so that a page costs a bounded amount of memory. Not locked: the owner of the page
// serialises the calls.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "media/parsers/youtube_parser.h"
#include "page/media_entry.h"

namespace zab {

class OfferedMedia {
  public:
    static constexpr std::size_t kMostEntries = 100;
    /// Of all texts of the entries. Each repeats the page's address, which alone may be 1 MiB long.
    static constexpr std::size_t kMostEntryBytes = 16u << 20;
    static constexpr std::size_t kMostCatalogues = 16;
    static constexpr std::size_t kMostSegmentPlaces = 256;
    static constexpr std::size_t kLongestPlace = 8192;  // bytes; a longer one is not noted

    /// Adds an entry behind the others. One whose address is empty is dropped, and so is every new one of a
    /// full page. One that is held already (equal link, second URL and extra data) gives the held one what that
    /// does not know: size, duration, width, height.
    void offer(MediaEntry entry);

    [[nodiscard]] const std::vector<MediaEntry>& entries() const noexcept { return entries_; }
    /// The same; none are left here.
    [[nodiscard]] std::vector<MediaEntry> takeEntries() noexcept;

    /// Whether this address is that of an entry, or the second URL of one.
    [[nodiscard]] bool holdsAddress(std::string_view url) const noexcept;
    /// Whether an HDS stream whose fragments' addresses begin so has an entry.
    [[nodiscard]] bool holdsFragmentsOf(std::string_view streamBase) const noexcept;

    /// The stream catalogues of the page, in order of arrival; the oldest go first.
    void addCatalogue(std::unique_ptr<CYoutubeParser> catalogue);
    [[nodiscard]] const std::vector<std::unique_ptr<CYoutubeParser>>& catalogues() const noexcept {
        return catalogues_;
    }

    /// Notes where a playlist's segments lie, by the absolute address of one.
    void addSegmentPlace(std::string_view segmentUrl);
    /// Whether this address lies where segments of a playlist lie, and has their extension.
    [[nodiscard]] bool isSegment(std::string_view url) const noexcept;

  private:
    struct SegmentPlace {
        std::string directory;  // with its last "/"
        std::string extension;
        bool operator==(const SegmentPlace&) const = default;
    };

    std::vector<MediaEntry> entries_;
    std::size_t entryBytes_ = 0;
    std::vector<std::size_t> hashes_;  // of what makes each entry equal to another
    std::vector<std::unique_ptr<CYoutubeParser>> catalogues_;
    std::vector<SegmentPlace> segmentPlaces_;
};

}  // namespace zab
