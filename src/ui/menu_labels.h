// What the menus of the buttons say, in the download manager's language.
//
// Labels are UTF-16, names of links too. The texts of a language file come from strangers: a format of theirs
// is filled in here and never reaches printf.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "page/media_entry.h"
#include "settings/message_texts.h"

namespace zab {

/// `format` with each "%d", "%ld" and "%lu" replaced by the next number and "%%" by "%". A directive for which
/// there is no number, and any other one, stays as it stands.
std::string filledIn(std::string_view format, std::initializer_list<std::uint64_t> numbers);

/// In the largest unit of which there is a whole one (1,024 of the one below); what is cut off is not rounded.
std::string sizeText(std::uint64_t bytes, const MessageTexts& texts);
std::string durationText(std::uint32_t seconds, const MessageTexts& texts);

/// A menu as the button library takes it: both lists are as long.
struct Menu {
    std::vector<std::u16string> labels;
    std::vector<std::u16string> links;
    bool operator==(const Menu&) const = default;
};

/// Reads the narrow text of an entry, which is UTF-8 or ANSI.
using ReadNarrow = std::u16string (*)(std::string_view text);

/// The entries of a page, the best first, each with what its handler tells and, when known, size and duration;
/// a stream with its height, its format and, for an unknown size, its bit rate besides. Two or more end in one
/// that stands for all. Labels are plain text: one line, bounded, "&" doubled as menus want it.
Menu mediaMenu(std::span<const MediaEntry> entries, const MessageTexts& texts, ReadNarrow read);

/// Selected links in their order, each with its file name, or its address without one; two or more end in one
/// that stands for all. In UTF-8.
Menu linksMenu(std::span<const std::string> links, const MessageTexts& texts);

}  // namespace zab
