// When two media URLs name the same YouTube stream, and URLs without their byte range.
//
// The comparisons look at the first URL's parameters and ask whether each is in the second's query: as the
// whole end of one of its parameters, name and value. So they are not symmetric. Both URLs need a "?", at least
// ten characters, and the same text before the "?"; else, and when memory runs out, the answer is no. Letter
// case counts. Cost: n log n in the length of the URLs.
#pragma once

#include <string>
#include <string_view>

namespace zab {

/// Every parameter of `a` is in `b`, but for those that a player changes from request to request.
[[nodiscard]] bool sameStream(std::u16string_view a, std::u16string_view b, bool signatureMatters) noexcept;

/// The first "id=" parameter of `a` is in `b`.
[[nodiscard]] bool sameId(std::u16string_view a, std::u16string_view b) noexcept;

/// Every "id=" and every "itag=" parameter of `a` is in `b`, and `a` has both.
[[nodiscard]] bool sameIdAndItag(std::u16string_view a, std::u16string_view b) noexcept;

/// The URL without its first "range" parameter.
[[nodiscard]] std::string withoutRange(std::string_view url);
[[nodiscard]] std::u16string withoutRange(std::u16string_view url);

}  // namespace zab
