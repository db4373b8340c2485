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
#include "page/page_streams.h"

namespace zab {

class OfferedMedia {
  public:
    static constexpr std::size_t kMostEntries = 100;
    /// Of all texts of the entries. Each repeats the page's address, which alone may be 1 MiB long.
    static constexpr std::size_t kMostEntryBytes = 16u << 20;
    static constexpr std::size_t kMostCatalogues = 16;

    /// Adds an entry behind the others. One whose address is empty is dropped. One that is held already (equal
    /// link, second URL and extra data) gives the held one what that does not know: size, duration, width,
    /// height. A stream that a master playlist names takes the place of its bare media playlist. On a full page
    /// a stream takes the place of the oldest plain entry; else the new entry is dropped.
    void offer(MediaEntry entry);

    /// A media playlist of HLS passed by: the entries that play it learn what they did not know of it. False:
    /// none does. `duration` in seconds, 0: unknown; `extension` empty: that of transport streams.
    bool learnFromPlaylist(std::string_view url, std::uint32_t duration, std::string_view extension);
    /// Takes out the entry of a bare media playlist that turned out to be no film.
    void dropBarePlaylist(std::string_view url) noexcept;

    [[nodiscard]] const std::vector<MediaEntry>& entries() const noexcept { return entries_; }
    /// The same; none are left here.
    [[nodiscard]] std::vector<MediaEntry> takeEntries() noexcept;

    /// What is known of the page's streams beside their entries.
    [[nodiscard]] PageStreams& streams() noexcept { return streams_; }
    [[nodiscard]] const PageStreams& streams() const noexcept { return streams_; }

    /// The stream catalogues of the page, in order of arrival; the oldest go first.
    void addCatalogue(std::unique_ptr<CYoutubeParser> catalogue);
    [[nodiscard]] const std::vector<std::unique_ptr<CYoutubeParser>>& catalogues() const noexcept {
        return catalogues_;
    }

  private:
    void replace(std::size_t index, MediaEntry entry);
    void remove(std::size_t index) noexcept;
    /// The entry of the bare media playlist at this address; the number of entries: there is none.
    [[nodiscard]] std::size_t bareAt(std::string_view address) const noexcept;
    /// Makes room for a stream where it can; false: the page is full.
    bool makeRoom(const MediaEntry& entry);

    std::vector<MediaEntry> entries_;
    std::size_t entryBytes_ = 0;
    std::vector<std::size_t> hashes_;  // of what makes each entry equal to another
    std::vector<std::unique_ptr<CYoutubeParser>> catalogues_;
    PageStreams streams_;
};

}  // namespace zab
