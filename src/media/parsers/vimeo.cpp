// The title, and the lax reading of objects behind "progressive":.

#include "media/parsers/vimeo.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

#include "binding/text.h"

namespace zab {
namespace {

/// What stands before `mark`, and `text` behind it; nothing, and `text` as it was, when there is no mark.
std::optional<std::string_view> takeUpTo(std::string_view& text, std::string_view mark) noexcept {
    const auto at = text.find(mark);
    if (at == text.npos) return std::nullopt;
    const std::string_view taken = text.substr(0, at);
    text.remove_prefix(at + mark.size());
    return taken;
}

std::optional<std::string_view> titleOf(std::string_view text) noexcept {
    if (!takeUpTo(text, "<title>") && !takeUpTo(text, "<TITLE>")) return std::nullopt;
    const auto title = takeUpTo(text, "</title>");
    return title ? title : takeUpTo(text, "</TITLE>");
}

/// A word in quotes of either kind, or bare up to one of `ends`; nothing when a quote is not closed.
std::optional<std::string_view> takeWord(std::string_view& text, std::string_view ends) noexcept {
    if (!text.empty() && (text.front() == '"' || text.front() == '\'')) {
        const std::string_view quote = text.substr(0, 1);
        text.remove_prefix(1);
        return takeUpTo(text, quote);
    }
    const std::string_view word = text.substr(0, text.find_first_of(ends));
    text.remove_prefix(word.size());
    return word;
}

bool takeMark(std::string_view& text, char mark) noexcept {
    if (!text.starts_with(mark)) return false;
    text.remove_prefix(1);
    return true;
}

}  // namespace

bool CVimeoParser::parse(std::string_view data) {
    std::string_view text = upToNul(data);
    if (const auto title = titleOf(text)) title_ = *title;
    if (!takeUpTo(text, "\"progressive\":")) return false;
    text = text.substr(0, text.find("}]"));
    while (takeUpTo(text, "{")) {
        const std::string_view members = text.substr(0, text.find_first_of("{}"));
        text.remove_prefix(members.size());
        if (!text.starts_with('{')) readObject(members);  // else the object holds another one
    }
    return !renditions_.empty();
}

void CVimeoParser::readObject(std::string_view members) {
    std::string_view url, quality, mime;
    const std::pair<std::string_view, std::string_view*> kept[] = {
        {"url", &url}, {"quality", &quality}, {"mime", &mime}};
    do {
        members = trimLeft(members);
        const auto key = takeWord(members, " \t\r\n:");
        members = trimLeft(members);
        if (!key || !takeMark(members, ':')) break;
        members = trimLeft(members);
        const auto value = takeWord(members, " \t\r\n,");
        if (!value) break;
        for (const auto& [name, place] : kept)
            if (*key == name) *place = *value;
    } while (takeMark(members, ','));
    if (url.empty() || quality.empty() || mime != "video/mp4") return;
    renditions_.push_back({std::string(url), std::string(quality)});
}

}  // namespace zab
