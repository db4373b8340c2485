#include "web/html_parser.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

#include "binding/pieces.h"
#include "binding/text.h"
#include "web/character_references.h"
#include "web/script_links.h"
#include "web/url.h"
#include "web/url_resolve.h"

namespace zab {
namespace {

using Attribute = HtmlAttribute;

struct LinkAttribute {
    std::string_view element;
    HtmlAttribute attribute;
    LinkSource source;
    bool playable;
    HtmlAttribute text;  // the attribute that says what it is
};

constexpr bool kPlays = true, kShows = false;

// In the order in which the links of one element count. What needs a closer look (a, base, form, link, meta,
// input, lists of pictures) is not among them.
constexpr LinkAttribute kLinkAttributes[] = {
    {"area", Attribute::href, LinkSource::link, kShows, Attribute::alt},
    {"iframe", Attribute::src, LinkSource::media, kShows, Attribute::title},
    {"frame", Attribute::src, LinkSource::media, kShows, Attribute::title},
    {"img", Attribute::src, LinkSource::media, kShows, Attribute::alt},
    {"image", Attribute::src, LinkSource::media, kShows, Attribute::alt},  // as browsers read it in HTML
    {"image", Attribute::href, LinkSource::media, kShows, Attribute::title},
    {"image", Attribute::xlinkHref, LinkSource::media, kShows, Attribute::title},
    {"source", Attribute::src, LinkSource::media, kPlays, Attribute::title},
    {"track", Attribute::src, LinkSource::media, kShows, Attribute::title},
    {"video", Attribute::src, LinkSource::media, kPlays, Attribute::title},
    {"video", Attribute::poster, LinkSource::media, kShows, Attribute::title},
    {"audio", Attribute::src, LinkSource::media, kPlays, Attribute::title},
    {"embed", Attribute::src, LinkSource::media, kPlays, Attribute::title},
    {"object", Attribute::data, LinkSource::media, kPlays, Attribute::title},
};

// Relations of a link element to a document or a feed.
constexpr std::string_view kDocumentRelations[] = {
    "alternate", "enclosure", "next",         "prev", "previous", "first",   "last",      "start",
    "up",        "top",       "contents",     "toc",  "index",    "chapter", "section",   "subsection",
    "appendix",  "glossary",  "bibliography", "help", "author",   "license", "copyright", "bookmark"};
// Parts of the page whatever else they are called.
constexpr std::string_view kPartRelations[] = {"stylesheet", "icon", "preload", "prefetch", "modulepreload"};

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

bool leadsToDocument(std::string_view relations) {
    bool leads = false;
    const std::string line = asLine(relations);
    for (const std::string_view written : piecesOf(line, ' ')) {
        if (isOneOfIgnoringCase(written, kPartRelations)) return false;
        leads |= isOneOfIgnoringCase(written, kDocumentRelations);
    }
    return leads;
}

/// Whether a form of this method asks for an address, as one without a method does.
bool isGet(std::string_view method) noexcept {
    return !equalsIgnoringCase(method, "post") && !equalsIgnoringCase(method, "dialog");
}

/// The code of a "javascript:" address; nothing when it is another.
std::optional<std::string> scriptOf(std::string_view written) {
    constexpr std::string_view kScheme = "javascript";
    const auto first = written.find_first_not_of(" \t\r\n\f");
    if (first == written.npos || toLower(written[first]) != kScheme.front()) return std::nullopt;
    const std::string cleaned = cleanedReference({}, written);
    if (!hasScheme(cleaned, kScheme)) return std::nullopt;
    return withoutEscapes(std::string_view(cleaned).substr(kScheme.size() + 1));
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

CHTMLParser::CHTMLParser(std::string_view baseUrl, std::string_view pageUrl, FileJudge judge)
    : links_(baseUrl, pageUrl, std::move(judge)) {}

void CHTMLParser::feed(std::string_view chunk) { tokenizer_.feed(chunk); }

void CHTMLParser::finish() {
    tokenizer_.finish();
    if (content_ == HtmlContent::script) harvestScript(script_);
    closeLink();
    links_.finish();
}

HtmlContent CHTMLParser::startTag(const HtmlTag& tag) {
    const std::string_view name = tag.name.view();
    endTextRun();
    if (readsText_ && isOneOf(name, kWordBreaks)) linkText_ += ' ';
    const bool isForeign = enterForeign(tag, name);
    if (name == "template" && !isForeign) ++templateDepth_;
    if (templateDepth_ == 0) takeLinks(tag, name, isForeign);
    content_ = isForeign ? HtmlContent::markup : contentOf(name);
    return content_;
}

void CHTMLParser::endTag(std::string_view name) {
    endTextRun();
    if (content_ == HtmlContent::script) {
        harvestScript(script_);
        script_.clear();
    }
    content_ = HtmlContent::markup;
    leaveForeign(name);
    if (name == "template" && templateDepth_ > 0) --templateDepth_;
    if (templateDepth_ > 0) return;
    if (name == "form") inGetForm_ = true;
    if (!readsText_) return;
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

void CHTMLParser::takeLinks(const HtmlTag& tag, std::string_view name, bool isForeign) {
    harvestScript(tag.eventCode());
    if (name == "a") {
        const bool isOfSvg = isForeign && !tag.has(Attribute::href);
        openLink(tag, tag[isOfSvg ? Attribute::xlinkHref : Attribute::href]);
    } else if (name == "base") {
        if (tag.has(Attribute::href)) links_.setBase(tag[Attribute::href]);
    } else if (name == "meta") {
        if (equalsIgnoringCase(tag[Attribute::httpEquiv], "refresh"))
            takeAddress(refreshTarget(tag[Attribute::content]), LinkSource::link, kShows, {});
    } else if (name == "link") {
        if (leadsToDocument(tag[Attribute::rel]))
            takeAddress(tag[Attribute::href], LinkSource::link, kShows, tag[Attribute::title]);
    } else if (name == "form" || name == "button" || name == "input") {
        takeForm(tag);
        if (name == "input" && equalsIgnoringCase(tag[Attribute::type], "image"))
            takeAddress(tag[Attribute::src], LinkSource::media, kShows, tag[Attribute::alt]);
    } else {
        takeAttributes(tag, name);
    }
}

/// A form leads to an address when it sends nothing else, and so does a button that overrules its form.
void CHTMLParser::takeForm(const HtmlTag& tag) {
    if (tag.name.view() == "form") {
        inGetForm_ = isGet(tag[Attribute::method]);
        if (inGetForm_) takeAddress(tag[Attribute::action], LinkSource::link, kShows, tag[Attribute::title]);
    } else if (tag.has(Attribute::formMethod) ? isGet(tag[Attribute::formMethod]) : inGetForm_) {
        takeAddress(tag[Attribute::formAction], LinkSource::link, kShows, tag[Attribute::title]);
    }
}

void CHTMLParser::takeAttributes(const HtmlTag& tag, std::string_view name) {
    for (const LinkAttribute& row : kLinkAttributes)
        if (row.element == name) takeAddress(tag[row.attribute], row.source, row.playable, tag[row.text]);
    if (name == "img" || name == "source") takeSourceSet(tag[Attribute::srcset]);
    if (readsText_ && name == "img" && tag.has(Attribute::alt))
        linkText_.append(tag[Attribute::alt].substr(0, kMostTextBytes));
}

void CHTMLParser::takeAddress(std::string_view written, LinkSource source, bool playable,
                              std::string_view text) {
    if (written.empty()) return;
    if (const auto script = scriptOf(written)) return harvestScript(*script);
    links_.add({.written = written, .source = source, .playable = playable, .text = asLine(text)});
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
        links_.add({.written = trimRight(url, ","), .source = LinkSource::media});
        if (url.ends_with(',')) continue;
        // The conditions end at a "," outside of parentheses.
        std::size_t at = 0;
        for (bool inside = false; at < list.size() && (inside || list[at] != ','); ++at)
            inside = list[at] == '(' || (inside && list[at] != ')');
        list.remove_prefix(at);
    }
}

/// A link in a link ends the outer one.
void CHTMLParser::openLink(const HtmlTag& tag, std::string_view href) {
    closeLink();
    if (href.empty()) return;
    if (const auto script = scriptOf(href)) return harvestScript(*script);
    openLink_ = links_.add({.written = href});
    readsText_ = true;
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

void CHTMLParser::harvestScript(std::string_view script) {
    if (script.empty()) return;
    CLinksInJavaParser(script).parse(
        [&](std::string_view reference) { links_.add({.written = reference, .source = LinkSource::script}); });
}

}  // namespace zab
