// The user's list of extensions to catch, and whether a file name is one of them.
//
// The list is narrow text: extensions without dots, separated by blanks. An item matches wherever it stands in
// a text behind a dot, so "zip" also matches "a.zipper"; users rely on short items that way.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "settings/settings_view.h"

namespace zab {

/// A list this long or longer, its terminator counted, cannot be read.
inline constexpr std::size_t kCatchListLimitBytes = 2000;

/// Whether "." and one of the items, all upper or all lower case, stands in `text` (a URL or a file name).
/// Items of 7 characters or more match nothing. `list` ends at its first NUL.
bool MatchExtensionList(std::string_view list, std::string_view text) noexcept;

/// The list of one decision: read from the settings when the first question needs it, and once.
class CatchList {
  public:
    explicit CatchList(const SettingsView& settings) noexcept : settings_(settings) {}

    /// Whether this extension (without dot, any letter case) is caught.
    [[nodiscard]] bool holds(std::string_view extension);

    /// Whether a question came that the list had to answer.
    [[nodiscard]] bool wasAsked() const noexcept { return list_.has_value(); }

    /// Whether such a question came and no list was there to answer it: absent, empty or too long to be read.
    [[nodiscard]] bool foundNone() const noexcept;

  private:
    const SettingsView& settings_;
    std::optional<std::string> list_;
};

enum class NumberedParts : bool { refused, allowed };

/// The extension of a name, by its last dot, when it can be one: no mark of "/;?=," in it; else empty.
std::string_view plainExtensionOf(std::string_view name) noexcept;

/// The file-name test: whether a name ends in an extension of the list. "a.rar.001" counts as "a.rar" where
/// numbered parts (one to three digits) are allowed.
bool acceptsFileName(std::string_view name, NumberedParts parts, CatchList& list);

}  // namespace zab
