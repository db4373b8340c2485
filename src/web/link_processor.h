// From what a page's author wrote to a list of downloads: absolute addresses, each once, in page order.
//
// References are cleaned as browsers do and resolved against the page's base, which may stand behind them: so
// they are kept as they are written until the page has ended. What cannot be downloaded is dropped: other
// schemes than those of the web, addresses that a browser refuses, and fragments of the page itself. Addresses
// that differ in their spelling or their fragment alone are one download. Texts are UTF-8.
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "web/links_array.h"

namespace zab {

/// Whether a file of this address is worth more than other links: inCatchList, mediaFile, or nothing.
using FileJudge = std::function<std::optional<LinkReason>(std::string_view url)>;

class CLinkProcessor {
  public:
    static constexpr std::size_t kMostLinks = 2000;
    /// A longer address is no link, a longer base no base: so that a page cannot make its links grow.
    static constexpr std::size_t kMostUrlBytes = 8192;
    static constexpr std::size_t kMostBaseBytes = 2048;

    /// Addresses are resolved against `baseUrl`; `pageUrl` is the page whose fragments are no links. Without a
    /// judge all files are alike.
    CLinkProcessor(std::string_view baseUrl, std::string_view pageUrl, FileJudge judge = {});

    /// The page's base element; only the first one counts.
    void setBase(std::string_view written);

    struct Found {
        std::string_view written;
        LinkSource source = LinkSource::link;
        bool playable = false;
        std::string_view text = {};
    };
    /// Gives the number of what was found, for setText.
    std::size_t add(const Found& found);
    void setText(std::size_t number, std::string_view text);

    /// The page has ended: makes the list of what was found. Where there are more than kMostLinks, the worst
    /// and last are left out.
    void finish();

    [[nodiscard]] const CLinksArray& links() const noexcept { return links_; }
    [[nodiscard]] std::size_t leftOut() const noexcept { return leftOut_.size(); }

  private:
    struct Written {
        std::string reference, text;
        LinkSource source;
        bool playable;
    };

    [[nodiscard]] std::optional<std::string> resolved(std::string_view written) const;
    [[nodiscard]] LinkReason reasonOf(std::string_view url, LinkSource source) const;
    void take(std::string url, Written& written, std::uint32_t place);
    void merge(PageLink& link, Written& written);
    void choose();

    FileJudge judge_;
    std::string page_;  // without its fragment
    std::string base_;
    bool baseGiven_ = false;
    std::vector<Written> found_;
    std::vector<PageLink> candidates_;
    std::unordered_map<std::string, std::size_t> known_;  // address without fragment: index of a candidate
    std::array<std::size_t, kLinkRanks> counts_{};        // of the candidates of each rank
    std::unordered_set<std::size_t> leftOut_;             // hashes of addresses
    CLinksArray links_;
};

}  // namespace zab
