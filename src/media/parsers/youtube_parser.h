// YouTube's stream catalogue: the media URLs in a watch page, an embedded player response or a video-info
// reply, each with its itag, and the answers about them that the capture pipeline asks for later.
//
// Texts are UTF-16 and end at their first NUL. A parse adds to the catalogue and never leaves it: what cannot
// be read ends its own step quietly. Out of memory flies as std::bad_alloc and leaves no half-made entry. Cost
// of a parse: a fixed number of passes over the text, and n log n comparisons for the duplicates among n
// streams; memory: the URLs found. Of a search in the catalogue: one comparison for each entry, or log n for a
// whole URL.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace zab {

class YoutubeReader;

struct YoutubeStreamEntry {
    std::u16string url;
    std::uint32_t itag = 0;
    std::uint32_t used = 0;      // 1: the browser has asked for this stream
    std::uint32_t adaptive = 0;  // 1: video or audio alone
    std::uint32_t hasProgressiveTwin = 0;
};

class CYoutubeParser {
  public:
    CYoutubeParser() = default;
    explicit CYoutubeParser(std::u16string pageUrl) : pageUrl_(std::move(pageUrl)) {}
    virtual ~CYoutubeParser() = default;
    CYoutubeParser(const CYoutubeParser&) = delete;
    CYoutubeParser& operator=(const CYoutubeParser&) = delete;

    /// Reads a watch page or a player response; the result is the count of entries. A text in which nothing is
    /// found leaves the title as it was.
    std::int32_t parsePage(std::u16string_view text);

    /// Reads a URL-encoded video-info reply.
    std::int32_t parseVideoInfo(std::u16string_view text);

    enum class Match { none, url, idAndItag, id };
    struct Captured {
        Match match = Match::none;
        std::uint32_t itag = 0;  // of a match by url or idAndItag
    };
    /// Reads the page, as a reply too when it holds nothing else, and looks up a URL that was captured from it.
    Captured parseCaptured(std::u16string_view text, std::u16string_view capturedUrl);

    /// Adds a stream and gives its index. A number other than 0 behind "&itag=" in the URL replaces `itag`.
    std::size_t addEntry(std::u16string url, std::uint32_t itag, bool adaptive);

    /// Whether an entry has exactly this URL.
    [[nodiscard]] bool holds(std::u16string_view url) const { return byUrl_.contains(url); }

    // The searches give the first entry that fits; their out-parameters are set only when the answer is yes.

    /// The entry with exactly this URL. With `mark` it is marked as used and `isWebM` is set too.
    bool findByUrl(std::u16string_view url, bool mark, bool& isWebM, std::uint32_t& itag);
    /// The first entry of the same stream, signature included; it is marked as used.
    bool findSameStream(std::u16string_view url, bool& isWebM, std::uint32_t& itag, bool& adaptive);
    [[nodiscard]] bool hasSameStream(std::u16string_view url) const noexcept;
    bool findSameIdAndItag(std::u16string_view url, std::uint32_t& itag) const noexcept;
    [[nodiscard]] bool hasSameId(std::u16string_view url) const noexcept;

    /// The audio track for an adaptive video.
    bool pickAudioFor(std::uint32_t videoItag, std::uint32_t& audioItag, std::u16string& audioUrl) const;

    /// Notes for each adaptive entry whether a progressive one shows the same picture. Every parse does so.
    void markProgressiveTwins();

    /// Undoes "%XX" in narrow text; does nothing where Windows cannot.
    static void unescapeInPlace(std::string& text);

    [[nodiscard]] const std::deque<YoutubeStreamEntry>& entries() const noexcept { return entries_; }
    [[nodiscard]] const std::u16string& pageUrl() const noexcept { return pageUrl_; }
    [[nodiscard]] const std::u16string& title() const noexcept { return title_; }

  private:
    [[nodiscard]] std::int32_t count() const noexcept { return static_cast<std::int32_t>(entries_.size()); }
    void readPage(YoutubeReader& reader);

    std::u16string pageUrl_;
    std::u16string title_;
    std::deque<YoutubeStreamEntry> entries_;            // never moved, so that views into them hold
    std::map<std::u16string_view, std::size_t> byUrl_;  // the first entry of each URL
};

}  // namespace zab
