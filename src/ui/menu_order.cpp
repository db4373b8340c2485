#include "ui/menu_order.h"

#include <algorithm>
#include <cstdint>
#include <tuple>
#include <unordered_map>

#include "binding/pieces.h"
#include "binding/text.h"
#include "binding/utf.h"

namespace zab {
namespace {

constexpr std::string_view kUltraHd = "Ultra HD";
constexpr std::uint32_t kUltraHdHeight = 2160;

/// The number of the first word that is digits and "p"; 0 without one.
std::uint32_t heightIn(std::string_view description) noexcept {
    for (const std::string_view word : piecesOf(description, ' ')) {
        const std::string_view digits = upTo(word, 'p');
        if (!digits.empty() && word.size() == digits.size() + 1 && std::ranges::all_of(digits, isDigit<char>))
            return entryNumber(digits);
    }
    return 0;
}

/// What a format is known by only in words counts as what the words say.
std::uint32_t heightOf(const MediaEntry& entry) noexcept {
    if (entry.height != 0) return entry.height;
    if (contains(entry.description, kUltraHd)) return kUltraHdHeight;
    return heightIn(entry.description);
}

auto rankOf(const MediaEntry& entry) noexcept {
    return std::tuple(entry.kind == EntryKind::video, heightOf(entry), entry.bitrate, entry.size);
}

}  // namespace

std::vector<std::size_t> menuOrder(std::span<const MediaEntry> entries) {
    using Rank = decltype(rankOf(entries.front()));
    std::vector<Rank> ranks;
    ranks.reserve(entries.size());
    for (const MediaEntry& entry : entries) ranks.push_back(rankOf(entry));
    std::vector<std::size_t> order;
    for (std::size_t i = 0; i < entries.size(); ++i)
        if (entries[i].inMenu) order.push_back(i);
    std::ranges::stable_sort(order, [&](std::size_t a, std::size_t b) { return ranks[a] > ranks[b]; });
    return order;
}

std::vector<std::string> linkNames(std::span<const MediaEntry> entries) {
    std::unordered_map<std::string_view, std::size_t> seen;
    std::vector<std::string> names;
    names.reserve(entries.size());
    for (const MediaEntry& entry : entries) {
        std::string& name = names.emplace_back(wellFormedUtf8(entry.link));
        const std::size_t number = ++seen[entry.link];
        if (number > 1) name.append("#").append(std::to_string(number));
    }
    return names;
}

std::optional<std::size_t> entryNamed(std::span<const MediaEntry> entries, std::string_view name) {
    const std::vector<std::string> names = linkNames(entries);
    const auto found = std::ranges::find(names, name);
    if (found == names.end()) return std::nullopt;
    return static_cast<std::size_t>(found - names.begin());
}

}  // namespace zab
