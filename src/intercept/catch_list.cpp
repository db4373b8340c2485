#include "intercept/catch_list.h"

#include <algorithm>
#include <array>

#include "binding/pieces.h"
#include "binding/text.h"
#include "web/url.h"

namespace zab {
namespace {

constexpr std::size_t kLongestItem = 6;
constexpr std::size_t kMostPartDigits = 3;
constexpr std::string_view kBlank = " ";
constexpr std::string_view kMarks = "/;?=,";

/// Whether `text` goes on with `item` in one of its two pure letter cases.
template <char (*Change)(char) noexcept>
bool goesOnWith(std::string_view text, std::string_view item) noexcept {
    return text.size() >= item.size() &&
           std::equal(item.begin(), item.end(), text.begin(), [](char a, char b) { return Change(a) == b; });
}

bool matchesBehindADot(std::string_view text, std::string_view item) noexcept {
    for (auto dot = text.find('.'); dot != std::string_view::npos; dot = text.find('.', dot + 1)) {
        const std::string_view rest = text.substr(dot + 1);
        if (goesOnWith<&toUpper<char>>(rest, item) || goesOnWith<&toLower<char>>(rest, item)) return true;
    }
    return false;
}

/// What of a list can be read; empty when it is too long.
std::string_view readableListOf(std::string_view list) noexcept {
    list = upToNul(list);
    return list.size() + 1 < kCatchListLimitBytes ? list : std::string_view{};
}

bool isPartNumber(std::string_view extension) noexcept {
    return !extension.empty() && extension.size() <= kMostPartDigits &&
           std::all_of(extension.begin(), extension.end(), isDigit<char>);
}

}  // namespace

bool MatchExtensionList(std::string_view list, std::string_view text) noexcept {
    for (const std::string_view item : piecesOf(readableListOf(list), ' '))
        if (!item.empty() && item.size() <= kLongestItem && matchesBehindADot(text, item)) return true;
    return false;
}

bool CatchList::holds(std::string_view extension) {
    if (extension.empty()) return false;
    if (!list_) list_ = settings_.extensions().value_or(std::string{});
    // No item is longer, so the rest of a long extension cannot matter.
    std::array<char, 1 + kLongestItem> dotted{'.'};
    std::size_t length = 1;
    for (const char c : extension.substr(0, kLongestItem)) dotted[length++] = toLower(c);
    return MatchExtensionList(*list_, {dotted.data(), length});
}

bool CatchList::foundNone() const noexcept { return list_ && trimLeft(readableListOf(*list_), kBlank).empty(); }

std::string_view plainExtensionOf(std::string_view name) noexcept {
    const std::string_view extension = extensionOf(name);
    return extension.find_first_of(kMarks) == std::string_view::npos ? extension : std::string_view{};
}

bool acceptsFileName(std::string_view name, NumberedParts parts, CatchList& list) {
    const std::string_view extension = plainExtensionOf(name);
    if (list.holds(extension)) return true;
    if (parts == NumberedParts::refused || !isPartNumber(extension)) return false;
    name.remove_suffix(extension.size() + 1);
    return list.holds(plainExtensionOf(name));
}

}  // namespace zab
