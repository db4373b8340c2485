#include "ui/menu_labels.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "binding/text.h"
#include "binding/utf.h"
#include "media/capture/descriptions.h"
#include "ui/menu_order.h"
#include "web/url.h"

namespace zab {
namespace {

constexpr std::string_view kNumberDirectives[] = {"%d", "%ld", "%lu"};

/// UTF-16 units of a name; what stands behind it is short.
constexpr std::size_t kMostLabelUnits = 160;
/// By which a description tells the bit rate.
constexpr std::string_view kBitrateWord = "bitrate";

struct Unit {
    TextId name;
    std::uint32_t shift;     // of bytes
    std::uint32_t decimals;  // 0 or 1, 2
};

constexpr Unit kUnits[] = {
    {TextId::gigabytes, 30, 2},
    {TextId::megabytes, 20, 1},
    {TextId::kilobytes, 10, 0},
    {TextId::bytes, 0, 0},
};

/// Digits behind the point of bytes / 2^shift, cut off.
std::string decimalsOf(std::uint64_t bytes, const Unit& unit) {
    std::uint64_t rest = bytes & ((std::uint64_t{1} << unit.shift) - 1);
    std::string digits;
    for (std::uint32_t i = 0; i < unit.decimals; ++i) {
        rest *= 10;
        digits += static_cast<char>('0' + (rest >> unit.shift));
        rest &= (std::uint64_t{1} << unit.shift) - 1;
    }
    return digits;
}

/// "720p TS": what a stream's description does not say already. A file's name says it.
std::string formatOf(const MediaEntry& entry) {
    if (!isStream(entry)) return {};
    const std::string quality = entry.height == 0 ? "" : std::to_string(entry.height) + 'p';
    const std::string type = uppered(entry.extension);
    return joined({contains(entry.description, quality) ? "" : quality,
                   contains(uppered(entry.description), type) ? "" : type});
}

/// "size duration", as far as they are known; of a stream whose size is not, the bit rate.
std::string factsOf(const MediaEntry& entry, const MessageTexts& texts) {
    std::string size = entry.size == 0 ? "" : sizeText(entry.size, texts);
    if (isStream(entry) && entry.size == 0 && entry.bitrate >= 1000 &&
        !contains(entry.description, kBitrateWord))
        size = std::to_string(entry.bitrate / 1000) + " kbit/s";
    const std::string duration = entry.duration == 0 ? "" : durationText(entry.duration, texts);
    return joined({size, duration});
}

/// One line of bounded length, without a key of its own: in a menu "&" would mark the next letter as one.
std::u16string plainText(std::u16string_view text) {
    std::u16string plain;
    bool blank = false;
    for (const char16_t unit : text.substr(0, kMostLabelUnits * 4)) {
        if (unit <= u' ' || unit == u'\x7F' || unit == u'\x85' || unit == u'\x2028' || unit == u'\x2029') {
            blank = !plain.empty();
            continue;
        }
        if (plain.size() >= kMostLabelUnits && !isLowSurrogate(unit)) return plain + u'\x2026';
        if (std::exchange(blank, false)) plain += u' ';
        plain.append(unit == u'&' ? 2 : 1, unit);
    }
    return plain;
}

std::u16string labelOf(const MediaEntry& entry, const MessageTexts& texts, ReadNarrow read) {
    std::u16string label = plainText(read(entry.description.empty() ? entry.link : entry.description));
    for (const std::string& part : {formatOf(entry), factsOf(entry, texts)})
        if (!part.empty()) label.append(u", ").append(plainText(utf16FromUtf8(part)));
    return label;
}

void addDownloadAll(Menu& menu, const MessageTexts& texts) {
    if (menu.links.size() < 2) return;
    menu.labels.push_back(plainText(utf16FromUtf8(texts[TextId::downloadAll].view())));
    menu.links.push_back(utf16FromUtf8(kAllEntries));
}

}  // namespace

std::string filledIn(std::string_view format, std::initializer_list<std::uint64_t> numbers) {
    std::string text;
    auto next = numbers.begin();
    while (!format.empty()) {
        const std::size_t before = std::min(format.find('%'), format.size());
        text.append(format.substr(0, before));
        format.remove_prefix(before);
        const auto directive =
            std::ranges::find_if(kNumberDirectives, [&](std::string_view d) { return format.starts_with(d); });
        if (format.starts_with("%%")) {
            text += '%';
            format.remove_prefix(2);
        } else if (directive != std::end(kNumberDirectives) && next != numbers.end()) {
            text.append(std::to_string(*next++));
            format.remove_prefix(directive->size());
        } else if (!format.empty()) {
            text += '%';
            format.remove_prefix(1);
        }
    }
    return text;
}

std::string sizeText(std::uint64_t bytes, const MessageTexts& texts) {
    const auto fits = [bytes](const Unit& unit) { return unit.shift == 0 || bytes >> unit.shift != 0; };
    const Unit& unit = *std::ranges::find_if(kUnits, fits);
    std::string text = std::to_string(bytes >> unit.shift);
    if (unit.decimals != 0) text.append(".").append(decimalsOf(bytes, unit));
    return text.append(" ").append(texts[unit.name].view());
}

std::string durationText(std::uint32_t seconds, const MessageTexts& texts) {
    constexpr std::uint32_t kMinute = 60, kHour = 3600;
    if (seconds >= kHour)
        return filledIn(texts[TextId::hoursMinutes].view(), {seconds / kHour, seconds % kHour / kMinute});
    if (seconds >= kMinute)
        return filledIn(texts[TextId::minutesSeconds].view(), {seconds / kMinute, seconds % kMinute});
    return filledIn(texts[TextId::seconds].view(), {seconds});
}

Menu mediaMenu(std::span<const MediaEntry> entries, const MessageTexts& texts, ReadNarrow read) {
    const std::vector<std::string> names = linkNames(entries);
    Menu menu;
    for (const std::size_t index : menuOrder(entries)) {
        menu.labels.push_back(labelOf(entries[index], texts, read));
        menu.links.push_back(utf16FromUtf8(names[index]));
    }
    addDownloadAll(menu, texts);
    return menu;
}

Menu linksMenu(std::span<const std::string> links, const MessageTexts& texts) {
    Menu menu;
    for (const std::string& link : links) {
        const std::string name = fileNameOf(link);
        menu.labels.push_back(plainText(utf16FromUtf8(name.empty() ? link : name)));
        menu.links.push_back(utf16FromUtf8(link));
    }
    addDownloadAll(menu, texts);
    return menu;
}

}  // namespace zab
