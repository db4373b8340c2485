// The pieces of a text between separators, one after the other:
//
//     for (const std::string_view line : piecesOf(text, '\n')) ...
//
// A piece is what stands before each separator; what follows the last one is a piece only when it is not empty.
// Views into the text; `char` and `char16_t` alike.
#pragma once

#include <iterator>
#include <string_view>

#include "binding/text.h"

namespace zab {

template <class C>
class Pieces {
  public:
    constexpr Pieces(std::basic_string_view<C> text, C separator) noexcept
        : text_(text), separator_(separator) {}

    class Iterator {
      public:
        constexpr Iterator(std::basic_string_view<C> rest, C separator) noexcept
            : rest_(rest), separator_(separator) {}

        constexpr std::basic_string_view<C> operator*() const noexcept { return upTo(rest_, separator_); }
        constexpr Iterator& operator++() noexcept {
            const std::size_t piece = upTo(rest_, separator_).size();
            rest_.remove_prefix(piece < rest_.size() ? piece + 1 : piece);
            return *this;
        }
        constexpr bool operator==(std::default_sentinel_t) const noexcept { return rest_.empty(); }

      private:
        std::basic_string_view<C> rest_;
        C separator_;
    };

    [[nodiscard]] constexpr Iterator begin() const noexcept { return {text_, separator_}; }
    [[nodiscard]] constexpr std::default_sentinel_t end() const noexcept { return {}; }

  private:
    std::basic_string_view<C> text_;
    C separator_;
};

constexpr Pieces<char> piecesOf(std::string_view text, char separator) noexcept { return {text, separator}; }
constexpr Pieces<char16_t> piecesOf(std::u16string_view text, char16_t separator) noexcept {
    return {text, separator};
}

}  // namespace zab
