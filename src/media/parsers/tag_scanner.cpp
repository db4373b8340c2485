#include "media/parsers/tag_scanner.h"

#include <algorithm>

#include "binding/text.h"

namespace zab {
namespace {

constexpr std::size_t kNowhere = std::string_view::npos;

std::size_t behindWhiteSpace(std::string_view text, std::size_t from) noexcept {
    while (from < text.size() && isWhiteSpace(text[from])) ++from;
    return from;
}

bool hasAt(std::string_view text, std::size_t at, char c) noexcept { return at < text.size() && text[at] == c; }

bool nameEndsAt(std::string_view text, std::size_t at) noexcept {
    return at < text.size() && (text[at] == '>' || isWhiteSpace(text[at]));
}

constexpr bool beginsName(char c) noexcept { return isLetter(c) || c == '_'; }
constexpr bool continuesName(char c) noexcept { return beginsName(c) || isDigit(c) || c == '-' || c == ':'; }

std::size_t behindAttributeName(std::string_view text, std::size_t at) noexcept {
    if (at == text.size() || !beginsName(text[at])) return at;
    while (at < text.size() && continuesName(text[at])) ++at;
    return at;
}

std::size_t behindBareValue(std::string_view text, std::size_t at) noexcept {
    while (at < text.size() && text[at] != '/' && text[at] != '>' && !isWhiteSpace(text[at])) ++at;
    return at;
}

}  // namespace

TagIndex::TagIndex(std::string_view text, std::span<const ElementName> names)
    : text_(text), found_(names.size()) {
    for (auto at = text.find('<'); at != kNowhere; at = text.find('<', at + 1)) readTag(at, names);
}

void TagIndex::readTag(std::size_t at, std::span<const ElementName> names) {
    const std::size_t begin = behindWhiteSpace(text_, at + 1);
    if (hasAt(text_, begin, '/')) return readSlashTag(at, begin, names);
    for (std::size_t i = 0; i < names.size(); ++i) {
        const auto& [name, isPrefix] = names[i];
        if (!startsWithIgnoringCase(text_.substr(begin), name)) continue;
        const std::size_t behind = begin + name.size();
        if (isPrefix || nameEndsAt(text_, behind)) found_[i].starts.push_back({at, behind});
    }
}

// The end of an element that is walked through and the close of a content follow different rules: white space
// may stand before the slash of the one, and around the name of the other.
void TagIndex::readSlashTag(std::size_t at, std::size_t slash, std::span<const ElementName> names) {
    const std::size_t begin = behindWhiteSpace(text_, slash + 1);
    for (std::size_t i = 0; i < names.size(); ++i) {
        const auto& [name, isPrefix] = names[i];
        if (isPrefix || !startsWithIgnoringCase(text_.substr(begin), name)) continue;
        const std::size_t behind = begin + name.size();
        if (begin == slash + 1 && nameEndsAt(text_, behind)) found_[i].ends.push_back(at);
        if (slash == at + 1 && hasAt(text_, behindWhiteSpace(text_, behind), '>'))
            found_[i].closes.push_back(at);
    }
}

std::size_t TagIndex::endFrom(std::size_t name, std::size_t from) const {
    const auto& ends = found_[name].ends;
    const auto end = std::lower_bound(ends.begin(), ends.end(), from);
    return end == ends.end() ? text_.size() : *end;
}

std::optional<std::string_view> TagIndex::contentFrom(std::size_t name, std::size_t from) const {
    const auto& closes = found_[name].closes;
    const auto close = std::lower_bound(closes.begin(), closes.end(), from);
    if (close == closes.end()) return std::nullopt;
    return text_.substr(from, *close - from);
}

ElementContents::ElementContents(const TagIndex& tags, std::size_t name, const NextPlace& tagEnds) {
    for (const StartTag& start : tags.starts(name)) {
        const std::size_t tagEnd = tagEnds(start.behindName);
        if (tagEnd == kNowhere) break;
        const auto content = tags.contentFrom(name, tagEnd + 1);
        if (!content) break;  // nor has any later one
        contents_.push_back({start.at, *content});
    }
}

std::size_t ElementContents::firstFrom(std::size_t at) const {
    const auto before = [](const Content& content, std::size_t place) { return content.at < place; };
    return static_cast<std::size_t>(std::lower_bound(contents_.begin(), contents_.end(), at, before) -
                                    contents_.begin());
}

std::size_t ElementContents::firstBetween(std::size_t from, std::size_t to) const {
    const std::size_t index = firstFrom(from);
    return index < contents_.size() && contents_[index].at < to ? index : kNone;
}

std::size_t ElementContents::lastBetween(std::size_t from, std::size_t to) const {
    const std::size_t behind = firstFrom(to);
    return behind != 0 && contents_[behind - 1].at >= from ? behind - 1 : kNone;
}

TagAttributes::TagAttributes(std::string_view text, std::span<const std::string_view> names)
    : text_(text), names_(names), doubleQuotes_(text, '"'), singleQuotes_(text, '\'') {}

std::optional<TagAttributes::Attribute> TagAttributes::attributeAt(std::size_t at) const {
    const std::size_t behindName = behindAttributeName(text_, at);
    const std::size_t equals = behindWhiteSpace(text_, behindName);
    if (behindName == at || !hasAt(text_, equals, '=')) return std::nullopt;
    std::size_t begin = behindWhiteSpace(text_, equals + 1);
    std::size_t end, behind;
    if (hasAt(text_, begin, '"') || hasAt(text_, begin, '\'')) {
        end = (text_[begin] == '"' ? doubleQuotes_ : singleQuotes_)(begin + 1);
        if (end == kNowhere) return std::nullopt;
        ++begin;
        behind = end + 1;
    } else {
        end = behind = behindBareValue(text_, begin);
    }
    return Attribute{at, behindWhiteSpace(text_, behind), text_.substr(at, behindName - at),
                     text_.substr(begin, end - begin), false};
}

void TagAttributes::add(const Attribute& attribute, Values& values) const {
    for (std::size_t i = 0; i < names_.size(); ++i)
        if (names_[i] == attribute.name && values.of[i].data() == nullptr) values.of[i] = attribute.value;
}

// Quoted values may hold further start tags, whose own lists then run through the same attributes: n tags could
// ask for n lists of length n. So what a list holds from some attribute on is kept, every kKeptEvery bytes of a
// list at least, and a later list that comes to such an attribute ends there.
TagAttributes::Values TagAttributes::readAt(std::size_t from) {
    constexpr std::size_t kKeptEvery = 64;
    path_.clear();
    std::size_t at = behindWhiteSpace(text_, from);
    std::size_t lastKept = at;
    auto known = known_.find(at);
    while (known == known_.end()) {
        auto attribute = attributeAt(at);
        if (!attribute) {
            known = known_.emplace(at, Values{{}, at}).first;
            break;
        }
        attribute->isKept = attribute->next - lastKept >= kKeptEvery;
        if (attribute->isKept) lastKept = attribute->next;
        path_.push_back(*attribute);
        at = attribute->next;
        known = known_.find(at);
    }
    Values values = known->second;
    for (auto attribute = path_.rbegin(); attribute != path_.rend(); ++attribute) {
        add(*attribute, values);
        if (attribute->isKept) known_.emplace(attribute->at, values);
    }
    return values;
}

}  // namespace zab
