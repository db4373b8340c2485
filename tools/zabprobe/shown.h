// Text as tables for people show it.
#pragma once

#include <string>
#include <string_view>

namespace zabprobe {

/// An address without its query and user, which may be secrets of whoever shows the table around; long ones are
/// shortened in the middle, where they tell least. Well-formed UTF-8 without control characters.
std::string shownUrl(std::string_view url);

/// Appends a cell of at least `width` bytes; one blank at least stands behind the word.
void appendCell(std::string& line, std::string_view word, std::size_t width);

inline constexpr std::size_t kShownUrlBytes = 60;  // at most

}  // namespace zabprobe
