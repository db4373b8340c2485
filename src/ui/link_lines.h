// The links of a selected part of a page, as the extension tells them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zab {

inline constexpr std::size_t kMostSelectedLinks = 2000;

/// The http, https and ftp links of a text that holds one per line: each once, in order, the first 2,000. Links
/// that differ in their fragment alone are one. UTF-8.
std::vector<std::string> linksOfLines(std::u16string_view lines);

}  // namespace zab
