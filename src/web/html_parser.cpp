#include "web/html_parser.h"

#include <algorithm>
#include <iterator>

#include "binding/text.h"
#include "web/character_references.h"
#include "web/script_links.h"

namespace zab {
namespace {

using Attribute = HtmlAttribute;

enum class Use : std::uint8_t {
    link,
    picture,
    pictures,  // a list of them, with their conditions
    playable,
};

struct LinkAttribute {
    std::string_view element;
    HtmlAttribute attribute;
    Use use;
    HtmlAttribute text;  // the attribute that says what it is
};

// In the order in which the links of one element count. The text of "a" is its content.
constexpr LinkAttribute kLinkAttributes[] = {
    {"area", Attribute::href, Use::link, Attribute::alt},
    {"link", Attribute::href, Use::link, Attribute::title},
    {"form", Attribute::action, Use::link, Attribute::title},
    {"iframe", Attribute::src, Use::link, Attribute::title},
    {"frame", Attribute::src, Use::link, Attribute::title},
    {"img", Attribute::src, Use::picture, Attribute::alt},
    {"img", Attribute::srcset, Use::pictures, Attribute::alt},
    {"source", Attribute::src, Use::playable, Attribute::title},
    {"source", Attribute::srcset, Use::pictures, Attribute::title},
    {"video", Attribute::src, Use::playable, Attribute::title},
    {"video", Attribute::poster, Use::picture, Attribute::title},
    {"audio", Attribute::src, Use::playable, Attribute::title},
    {"embed", Attribute::src, Use::playable, Attribute::title},
    {"object", Attribute::data, Use::playable, Attribute::title},
};

struct RawElement {
    std::string_view name;
    HtmlContent content;
};

// With scripts switched on, as they are where this module runs.
constexpr RawElement kRawElements[] = {
    {"script", HtmlContent::script},   {"style", HtmlContent::raw},    {"textarea", HtmlContent::raw},
    {"title", HtmlContent::raw},       {"noscript", HtmlContent::raw}, {"iframe", HtmlContent::raw},
    {"noembed", HtmlContent::raw},     {"noframes", HtmlContent::raw}, {"xmp", HtmlContent::raw},
    {"plaintext", HtmlContent::plain},
};

// Start tags that end svg and math elements, whatever is open in them.
constexpr std::string_view kForeignEnders[] = {
    "b",     "big",   "blockquote", "body",   "br",   "center", "code",  "dd", "div",  "dl",   "dt",
    "em",    "embed", "h1",         "h2",     "h3",   "h4",     "h5",    "h6", "head", "hr",   "i",
    "img",   "li",    "listing",    "menu",   "meta", "nobr",   "ol",    "p",  "pre",  "ruby", "s",
    "small", "span",  "strong",     "strike", "sub",  "sup",    "table", "tt", "u",    "ul",   "var"};
constexpr std::string_view kForeignRoots[] = {"svg", "math"};
constexpr std::string_view kIntegrationPoints[] = {"foreignobject", "desc", "title"};

// Elements that part words.
constexpr std::string_view kWordBreaks[] = {"br", "p",  "div", "li", "td", "th", "tr", "dt",
                                            "dd", "h1", "h2",  "h3", "h4", "h5", "h6"};

template <std::size_t Count>
bool isOneOf(std::string_view name, const std::string_view (&list)[Count]) noexcept {
    return std::find(std::begin(list), std::end(list), name) != std::end(list);
}

HtmlContent contentOf(std::string_view name) noexcept {
    for (const RawElement& row : kRawElements)
        if (row.name == name) return row.content;
    return HtmlContent::markup;
}

/// One blank for each stretch of white space, none around; no NUL; cut between characters.
std::string asLine(std::string_view text) {
    std::string line;
    bool gap = false;
    for (const char c : text) {
        if (c == '\0') continue;
        if (isWhiteSpace(c) || c == '\f') {
            gap = !line.empty();
            continue;
        }
        if (gap) line += ' ';
        gap = false;
        line += c;
        if (line.size() > CHTMLParser::kMostTextBytes) break;
    }
    if (line.size() <= CHTMLParser::kMostTextBytes) return line;
    std::size_t end = CHTMLParser::kMostTextBytes;
    while (end > 0 && (static_cast<unsigned char>(line[end]) & 0xC0) == 0x80) --end;
    line.resize(end);
    return line;
}

/// The address in the content of a refresh ("5; url=next.html"), by the standard's steps; empty without one.
std::string_view refreshTarget(std::string_view content) noexcept {
    constexpr std::string_view kSpace = " \t\r\n\f";
    content = trimLeft(content, kSpace);
    const auto time = std::min(content.find_first_not_of("0123456789."), content.size());
    if (time == 0) return {};
    content.remove_prefix(time);
    if (content.empty() ||
        (content.front() != ';' && content.front() != ',' && !contains(kSpace, content.substr(0, 1))))
        return {};
    content = trimLeft(content, kSpace);
    if (content.starts_with(';') || content.starts_with(',')) content = trimLeft(content.substr(1), kSpace);
    if (startsWithIgnoringCase(content, "url")) {
        const std::string_view behind = trimLeft(content.substr(3), kSpace);
        if (behind.starts_with('=')) content = trimLeft(behind.substr(1), kSpace);
    }
    if (content.starts_with('"') || content.starts_with('\'')) return upTo(content.substr(1), content.front());
    return content;
}

}  // namespace

CHTMLParser::CHTMLParser(std::string_view baseUrl, std::string_view pageUrl)
    : links_(baseUrl, pageUrl), media_(baseUrl, pageUrl) {}

void CHTMLParser::feed(std::string_view chunk) { tokenizer_.feed(chunk); }

void CHTMLParser::finish() {
    tokenizer_.finish();
    if (content_ == HtmlContent::script) harvestScript();
    closeLink();
}

HtmlContent CHTMLParser::startTag(const HtmlTag& tag) {
    const std::string_view name = tag.name.view();
    endTextRun();
    if (readsText_ && isOneOf(name, kWordBreaks)) linkText_ += ' ';
    const bool isForeign = enterForeign(tag, name);
    if (name == "template" && !isForeign) ++templateDepth_;
    if (templateDepth_ == 0) takeLinks(tag, name);
    content_ = isForeign ? HtmlContent::markup : contentOf(name);
    return content_;
}

void CHTMLParser::endTag(std::string_view name) {
    endTextRun();
    if (content_ == HtmlContent::script) harvestScript();
    content_ = HtmlContent::markup;
    leaveForeign(name);
    if (name == "template" && templateDepth_ > 0) --templateDepth_;
    if (templateDepth_ > 0 || !readsText_) return;
    if (name == "a") closeLink();
    if (isOneOf(name, kWordBreaks)) linkText_ += ' ';
}

void CHTMLParser::text(std::string_view piece) {
    if (content_ == HtmlContent::script) {
        if (templateDepth_ == 0) script_ += piece;
    } else if (content_ == HtmlContent::markup && readsText_ && templateDepth_ == 0) {
        // References and blanks shrink: what is read is several times what is kept.
        constexpr std::size_t kMostRead = 4 * kMostTextBytes;
        const std::size_t read = std::min(kMostRead, linkText_.size() + textRun_.size());
        textRun_ += piece.substr(0, kMostRead - read);
    }
}

/// In svg and math elements names mean other things, and only there is CDATA known. Only the depth is kept:
/// pages nest these elements properly or not at all.
bool CHTMLParser::enterForeign(const HtmlTag& tag, std::string_view name) noexcept {
    if (inForeign() && isOneOf(name, kForeignEnders)) foreignDepth_ = integrationDepth_;
    const bool isForeign = inForeign();
    if (isForeign && isOneOf(name, kIntegrationPoints) && !tag.selfClosing) ++integrationDepth_;
    if (isOneOf(name, kForeignRoots) && !tag.selfClosing) ++foreignDepth_;
    return isForeign;
}

void CHTMLParser::leaveForeign(std::string_view name) noexcept {
    if (integrationDepth_ > 0 && isOneOf(name, kIntegrationPoints)) --integrationDepth_;
    if (foreignDepth_ > 0 && isOneOf(name, kForeignRoots)) --foreignDepth_;
    integrationDepth_ = std::min(integrationDepth_, foreignDepth_);
}

void CHTMLParser::takeLinks(const HtmlTag& tag, std::string_view name) {
    if (name == "a") {
        openLink(tag);
        return;
    }
    if (name == "base") {
        if (tag.has(Attribute::href)) takeBase(tag[Attribute::href]);
        return;
    }
    if (name == "meta") {
        if (equalsIgnoringCase(tag[Attribute::httpEquiv], "refresh"))
            links_.add({.written = refreshTarget(tag[Attribute::content]), .place = ++place_});
        return;
    }
    for (const LinkAttribute& row : kLinkAttributes) {
        if (row.element != name || !tag.has(row.attribute)) continue;
        const std::string_view written = tag[row.attribute];
        if (row.use == Use::pictures) {
            takeSourceSet(written);
            continue;
        }
        const bool isLink = row.use == Use::link;
        CLinkProcessor& list = isLink ? links_ : media_;
        const std::string described = asLine(tag[row.text]);
        list.add({.written = written,
                  .source = isLink ? LinkSource::link : LinkSource::media,
                  .playable = row.use == Use::playable,
                  .place = ++place_,
                  .text = described});
    }
    if (readsText_ && name == "img" && tag.has(Attribute::alt))
        linkText_.append(tag[Attribute::alt].substr(0, kMostTextBytes));
}

/// A list of pictures, each followed by conditions under which it is shown ("a.png 2x, b.png 100w").
void CHTMLParser::takeSourceSet(std::string_view list) {
    constexpr std::string_view kSpace = " \t\r\n\f";
    while (true) {
        list = trimLeft(list, " \t\r\n\f,");
        if (list.empty()) return;
        const auto end = std::min(list.find_first_of(kSpace), list.size());
        const std::string_view url = list.substr(0, end);
        list.remove_prefix(end);
        media_.add({.written = trimRight(url, ","), .source = LinkSource::media, .place = ++place_});
        if (url.ends_with(',')) continue;
        // The conditions end at a "," outside of parentheses.
        std::size_t at = 0;
        for (bool inside = false; at < list.size() && (inside || list[at] != ','); ++at)
            inside = list[at] == '(' || (inside && list[at] != ')');
        list.remove_prefix(at);
    }
}

void CHTMLParser::takeBase(std::string_view written) {
    closeLink();
    links_.setBase(written);
    media_.setBase(written);
}

/// A link in a link ends the outer one.
void CHTMLParser::openLink(const HtmlTag& tag) {
    closeLink();
    if (!tag.has(Attribute::href)) return;
    const auto index = links_.add({.written = tag[Attribute::href], .place = ++place_});
    if (!index || !links_.links()[static_cast<std::int32_t>(*index)].text.empty()) return;
    readsText_ = true;
    openLink_ = *index;
    linkTitle_ = asLine(tag[Attribute::title]);
}

void CHTMLParser::closeLink() {
    if (!readsText_) return;
    endTextRun();
    const std::string line = asLine(linkText_);
    links_.setText(openLink_, line.empty() ? linkTitle_ : line);
    readsText_ = false;
    linkText_.clear();
}

void CHTMLParser::endTextRun() {
    if (textRun_.empty()) return;
    linkText_ += decodeCharacterReferences(textRun_, ReferencePlace::text);
    textRun_.clear();
}

void CHTMLParser::harvestScript() {
    CLinksInJavaParser(script_).parse([&](std::string_view reference) {
        links_.add({.written = reference, .source = LinkSource::script, .place = ++place_});
    });
    script_.clear();
}

void harvestPage(std::string_view markup, std::string_view pageUrl, CLinksArray& links) {
    CHTMLParser parser(pageUrl, pageUrl);
    parser.feed(markup);
    parser.finish();
    mergeInPageOrder(parser.links(), parser.mediaSources(), links);
}

}  // namespace zab
