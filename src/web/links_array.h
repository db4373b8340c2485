// The links that were found on a page, and what each is worth to somebody who wants the downloads of that page.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "binding/pointer_array.h"

namespace zab {

enum class LinkSource : std::uint8_t {
    link,    // a link of the page's text or head, or a form that leads elsewhere
    script,  // an address in a script
    media,   // a part of the page: what it shows or plays, and its frames
};

/// Why a link is worth what it is, the best first.
enum class LinkReason : std::uint8_t {
    inCatchList,  // its extension is one that the user has caught
    mediaFile,    // its extension is that of a media file
    textLink,
    inScript,
    pagePart,
};

/// Of the first two reasons none is better than the other.
constexpr std::size_t rankOf(LinkReason reason) noexcept {
    return reason == LinkReason::inCatchList ? 0 : static_cast<std::size_t>(reason) - 1;
}
inline constexpr std::size_t kLinkRanks = rankOf(LinkReason::pagePart) + 1;

struct PageLink {
    std::string url;   // absolute
    std::string text;  // what a reader sees of it; empty: nothing
    LinkSource source = LinkSource::link;
    bool playable = false;    // media other than a picture
    std::uint32_t place = 0;  // grows along the page
    LinkReason reason = LinkReason::textLink;

    bool operator==(const PageLink& other) const noexcept { return url == other.url; }
};

class CLinksArray : public GrowingArray<PageLink, 40, 40> {};

}  // namespace zab
