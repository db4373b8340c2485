// What a page knows of its streams beside their entries: where their parts lie, and which playlists are parts
// of others.
//
// Addresses are kept as hashes of 64 bits, so that a page of many streams costs a few kilobytes and a question
// costs the same however many there are. Two addresses that fall together would hide an entry of a page, no
// more. Each set is bounded and forgets what it was told first. Not locked: see OfferedMedia.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace zab {

/// At most `most` keys; the oldest go first. Takes no memory while it is empty.
class RecentKeys {
  public:
    explicit RecentKeys(std::size_t most) noexcept : most_(most) {}

    void add(std::uint64_t key);
    [[nodiscard]] bool holds(std::uint64_t key) const noexcept { return keys_.contains(key); }
    [[nodiscard]] bool empty() const noexcept { return keys_.empty(); }

  private:
    std::size_t most_;
    std::unordered_set<std::uint64_t> keys_;
    std::vector<std::uint64_t> order_;  // a ring, once it is full
    std::size_t oldest_ = 0;            // in the full ring
};

class PageStreams {
  public:
    static constexpr std::size_t kMostPlaces = 256;
    static constexpr std::size_t kMostRenditions = 256;
    static constexpr std::size_t kMostFragmentStreams = 100;

    /// A directory and an extension (any letter case) in which parts of streams lie, by the absolute address of
    /// one. What stands behind its path does not count.
    void addPlace(std::string_view partUrl);
    /// The same by the directory of `url` and an extension.
    void addPlace(std::string_view url, std::string_view extension);
    /// Whether this address lies in such a place.
    [[nodiscard]] bool isPart(std::string_view url) const noexcept;

    /// A playlist that a master playlist names as the sound or the text of its films.
    void addRendition(std::string_view url) { renditions_.add(keyOf(url)); }
    [[nodiscard]] bool isRendition(std::string_view url) const noexcept {
        return renditions_.holds(keyOf(url));
    }

    /// An HDS stream that is known by one of its fragments: what stands before the fragments' names.
    void addFragmentsOf(std::string_view streamBase) { fragments_.add(keyOf(streamBase)); }
    [[nodiscard]] bool knowsFragmentsOf(std::string_view streamBase) const noexcept {
        return fragments_.holds(keyOf(streamBase));
    }

  private:
    [[nodiscard]] static std::uint64_t keyOf(std::string_view text) noexcept;
    [[nodiscard]] static std::uint64_t placeOf(std::string_view url, std::string_view extension) noexcept;

    RecentKeys places_{kMostPlaces};
    RecentKeys renditions_{kMostRenditions};
    RecentKeys fragments_{kMostFragmentStreams};
};

}  // namespace zab
