// The pages of the site that play media: what there is to fetch for them, what the module has to offer on each,
// and what the user does there. Addresses have the marks of withOrigins().
#pragma once

#include <span>
#include <string_view>

#include "resources.h"

namespace zab::site {

struct MediaPage {
    int id;  // of its document
    std::string_view title;
};
inline constexpr MediaPage kFilmPage{201, "A film in segments"}, kPlayPage{202, "A play in two languages"},
    kLecturePage{203, "A lecture (DASH)"}, kConcertPage{204, "A concert (HDS)"},
    kHolidayPage{205, "A holiday in one file"}, kSongPage{206, "A song on a watch page"},
    kShortPage{207, "A short film in a player"};

/// Of the menu of a page's button.
struct Entry {
    const MediaPage& page;
    std::string_view link, label;
};

/// What the user does on a page, and the files that the download manager must get then, or join.
struct Act {
    const MediaPage& page;
    std::string_view kind;  // "chooses" or "downloadsAll" (exchange_list.md)
    std::string_view what;  // the link of an entry, or markup
    std::string_view link;
    std::span<const std::string_view> files;
    std::string_view why;
};

std::span<const Resource> mediaResources() noexcept;
/// Page by page, each in menu order.
std::span<const Entry> mediaEntries() noexcept;
std::span<const Act> mediaActs() noexcept;

}  // namespace zab::site
