// The links that were found on a page.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "binding/pointer_array.h"

namespace zab {

enum class LinkSource : std::uint8_t {
    link,    // a link of the page, or a frame or form that leads elsewhere
    media,   // what the page shows or plays
    script,  // an address in a script
};

struct PageLink {
    std::string url;   // absolute
    std::string text;  // what a reader sees of it; empty: nothing
    LinkSource source = LinkSource::link;
    bool playable = false;    // media other than a picture
    std::uint32_t place = 0;  // grows along the page

    /// What another place of the page says about the same address.
    void takeFrom(std::string_view otherText, bool otherPlayable) {
        if (text.empty()) text = otherText;
        playable |= otherPlayable;
    }
    bool operator==(const PageLink& other) const noexcept { return url == other.url; }
};

class CLinksArray : public GrowingArray<PageLink, 40, 40> {};

}  // namespace zab
