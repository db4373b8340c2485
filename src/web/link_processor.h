// From what a page's author wrote to a list of downloads: absolute addresses, each once, in page order.
//
// References are cleaned as browsers do and resolved against the page's base. What cannot be downloaded is
// dropped: other schemes than those of the web, and fragments of the page itself. Addresses that differ in
// their fragment alone are one download. Texts are UTF-8.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "web/links_array.h"

namespace zab {

class CLinkProcessor {
  public:
    static constexpr std::size_t kMostLinks = 2000;
    /// A longer address is no link, a longer base no base: so that a page cannot make its links grow.
    static constexpr std::size_t kMostUrlBytes = 8192;
    static constexpr std::size_t kMostBaseBytes = 2048;

    /// Addresses are resolved against `baseUrl`; `pageUrl` is the page whose fragments are no links.
    CLinkProcessor(std::string_view baseUrl, std::string_view pageUrl);

    /// The page's base element; only the first one counts. The links before it are resolved anew and may fall
    /// together; indices given so far end.
    void setBase(std::string_view written);

    struct Found {
        std::string_view written;
        LinkSource source = LinkSource::link;
        bool playable = false;
        std::uint32_t place = 0;
        std::string_view text = {};
    };
    /// Gives the index of the link, new or known; nothing when it was dropped or the list is full. A known link
    /// takes a text that it had not.
    std::optional<std::size_t> add(const Found& found);

    /// For a link whose text is empty so far.
    void setText(std::size_t index, std::string_view text);

    [[nodiscard]] const CLinksArray& links() const noexcept { return links_; }

  private:
    [[nodiscard]] std::optional<std::string> absolute(std::string_view written) const;

    std::string page_;  // without its fragment
    std::string base_;
    bool baseGiven_ = false;
    CLinksArray links_;
    std::unordered_map<std::string, std::size_t> known_;  // address without fragment: index
    std::vector<std::string> written_;                    // as long as a base may still come
};

/// Both lists as one, in the order of their places, each address once; at most CLinkProcessor::kMostLinks.
void mergeInPageOrder(const CLinksArray& a, const CLinksArray& b, CLinksArray& merged);

}  // namespace zab
