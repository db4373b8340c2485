// Plain addresses: of the media that a page's markup names, and in short lists of links.

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "binding/text.h"
#include "media/capture/handlers/handlers.h"
#include "media/parsers/stream_urls.h"
#include "page/media_entry.h"
#include "web/html_parser.h"
#include "web/url.h"

namespace zab {
namespace {

constexpr std::string_view kSchemeMark = "://";
constexpr std::string_view kSchemes[] = {"https", "http", "ftp", "mms"};
constexpr std::string_view kOpening = "([{", kClosing = ")]}";
constexpr std::string_view kEnds = "\"'<>";

/// How long an address at the start of `text` is: up to white space, a control character, a quote, an angle
/// bracket, or a closing bracket that was not opened in it.
std::size_t addressLength(std::string_view text) noexcept {
    std::array<std::size_t, 3> open{};
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const auto byte = static_cast<unsigned char>(c);
        if (byte <= ' ' || byte == 0x7F || contains(kEnds, {&c, 1})) return i;
        if (const auto kind = kOpening.find(c); kind != std::string_view::npos) ++open[kind];
        if (const auto kind = kClosing.find(c); kind != std::string_view::npos && open[kind]-- == 0) return i;
    }
    return text.size();
}

/// An entry that the body names as a page names its links.
MediaEntry linkedEntry(std::string link, const CaptureRun& run) {
    MediaEntry entry = run.plainEntry(std::move(link));
    entry.page.referrer = run.context().url;
    return entry;
}

/// How long the scheme is that `text` ends with; 0: none.
std::size_t schemeLength(std::string_view text) noexcept {
    const auto scheme = std::ranges::find_if(
        kSchemes, [text](std::string_view name) { return endsWithIgnoringCase(text, name); });
    return scheme == std::end(kSchemes) ? 0 : scheme->size();
}

}  // namespace

void offerLinkText(std::string_view body, CaptureRun& run) {
    if (body.size() >= mediaKindCapBytes(MediaKind::linkText)) return;
    std::string_view text = upToNul(body);
    for (auto mark = text.find(kSchemeMark); mark != std::string_view::npos; mark = text.find(kSchemeMark)) {
        const std::size_t scheme = schemeLength(text.substr(0, mark));
        const std::size_t behind = mark + kSchemeMark.size();
        const std::size_t rest = scheme == 0 ? 0 : addressLength(text.substr(behind));
        const std::string_view link = text.substr(mark - scheme, scheme + kSchemeMark.size() + rest);
        text.remove_prefix(behind + rest);
        if (rest != 0 && !run.offer(linkedEntry(std::string(link), run))) return;
    }
}

void offerPage(std::string_view body, CaptureRun& run) {
    const std::string_view url = run.context().url;
    CHTMLParser parser(url, url);
    parser.feed(body);
    parser.finish();
    for (const PageLink& source : parser.links()) {
        if (!source.playable || !isMediaExtension(extensionOf(lastSegmentOf(source.url)))) continue;
        if (!run.offer(linkedEntry(withoutRange(source.url), run))) return;
    }
}

}  // namespace zab
