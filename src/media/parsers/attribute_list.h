// Attribute lists of HLS tags (RFC 8216, section 4.2): NAME=value, separated by commas, values bare or in
// quotes.
//
// Leniently read: only the first quoted part of an attribute protects its commas, and a quote that is never
// closed takes the rest of the list. Every byte is looked at a fixed number of times.
#pragma once

#include <string_view>

namespace zab {

struct ListAttribute {
    std::string_view name;   // case matters
    std::string_view value;  // one quote at each end removed, each on its own
};

class AttributeList {
  public:
    explicit AttributeList(std::string_view list) noexcept : rest_(list) {}

    /// The next attribute that has a value; pieces without "=" are passed over. False at the end of the list.
    bool next(ListAttribute& attribute) noexcept;

  private:
    std::string_view takePiece() noexcept;

    std::string_view rest_;
};

/// A playlist's line or attribute without its outer blanks: spaces and tabs in front; spaces, tabs and carriage
/// returns behind.
std::string_view withoutOuterBlanks(std::string_view text) noexcept;

}  // namespace zab
