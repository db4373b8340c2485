// The order of a page's menu, and the names under which its entries stand there: one rule for the menu itself
// and for what is made of a choice in it.
//
// All of it is over the page's entries as they stand, in order of their arrival.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "page/media_entry.h"

namespace zab {

/// The link that stands for every entry of a page, in menu order.
inline constexpr std::string_view kAllEntries = "!ALL!";

/// Indices of the entries that the menu shows, the best first: video before sound; then by the picture's
/// height, the bit rate and the size, each unknown one behind those that are known. Equal ones stay in order of
/// arrival.
std::vector<std::size_t> menuOrder(std::span<const MediaEntry> entries);

/// The name of each entry, at its index, in UTF-8: its link, and for the n-th entry with the same link (n from
/// 2) "#" and n behind it. Counted in order of arrival, so an open menu stays right when entries are added.
std::vector<std::string> linkNames(std::span<const MediaEntry> entries);

/// Index of the entry with this name.
std::optional<std::size_t> entryNamed(std::span<const MediaEntry> entries, std::string_view name);

}  // namespace zab
