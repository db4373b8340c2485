// The searches in a page or reply, and how a URL found there is cleaned.

#include "media/parsers/youtube_reader.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "binding/pieces.h"
#include "binding/text.h"
#include "binding/utf.h"
#include "media/parsers/replace.h"
#include "media/parsers/youtube_parser.h"

namespace zab {
namespace {

using View = std::u16string_view;

constexpr View kEscapedAmpersand = u"\\u0026";
constexpr View kEscapedQuote = u"\\\"";
constexpr View kEncodedQuote = u"%22";
constexpr View kMediaPath = u"videoplayback";
// In streaming data the numbers below are progressive formats. Deliberate: 43 to 46, progressive too, count as
// adaptive there. Held by YoutubeStreamingData.IsReadUrlByUrl.
constexpr std::uint32_t kFirstAdaptiveItag = 39;

struct StreamingMarker {
    View text;
    bool encoded;  // the JSON is URL-encoded, its quotes too
};
constexpr StreamingMarker kStreamingMarkers[] = {
    {u"\\\"streamingData\\\":", false},
    {u"%22streamingData%22%3A", true},
    {u"\"streamingData\":", false},
};

bool contains(View text, View piece) noexcept { return text.find(piece) != text.npos; }

/// What stands before the first `mark`; the whole text when there is none.
View before(View text, View mark) noexcept { return text.substr(0, text.find(mark)); }

std::uint32_t numberAtStart(View text) noexcept {
    return static_cast<std::uint32_t>(leadingDigits<char16_t>(text, UINT32_MAX).value_or(0));
}

/// The text behind "KEY=" where the key stands at the very start of a piece or behind an ampersand, up to the
/// end of the piece; the first such place counts.
std::optional<View> fieldOf(View piece, View key, View ampersand) noexcept {
    for (std::size_t at = 0;;) {
        if (piece.substr(at).starts_with(key)) return piece.substr(at + key.size());
        at = piece.find(ampersand, at);
        if (at == piece.npos) return std::nullopt;
        at += ampersand.size();
    }
}

/// "\uXXXX" becomes its character, and a NUL ends the text. Every other JSON escape stays.
std::u16string withoutJsonEscapes(View text) {
    std::u16string plain;
    while (!text.empty()) {
        const View copied = before(text, u"\\u");
        plain += copied;
        text.remove_prefix(copied.size());
        if (text.empty()) break;
        const auto unit = hexDigits(text.substr(2), 4);
        if (unit == 0u) break;
        if (unit) {
            plain += static_cast<char16_t>(*unit);
        } else {
            plain += text.substr(0, 2);
        }
        text.remove_prefix(unit ? 6 : 2);
    }
    return plain;
}

}  // namespace

std::uint32_t itagInUrl(std::u16string_view url) noexcept {
    constexpr View kItag = u"&itag=";
    const auto at = url.find(kItag);
    return at == url.npos ? 0 : numberAtStart(url.substr(at + kItag.size()));
}

std::u16string cleanStreamUrl(std::u16string url, const UrlCleaning& cleaning) {
    url = replaceAll(url, u"\\/", u'/');
    if (cleaning.unescapeBackslashes) url = replaceAll(url, u"\\\\", u'\\');
    if (!cleaning.cutAtEscapedAmpersand) url = replaceAll(url, kEscapedAmpersand, u'&');
    url.resize(upTo<char16_t>(url, u',').size());
    if (cleaning.cutAtEscapedAmpersand) url.resize(before(url, kEscapedAmpersand).size());
    return url;
}

YoutubeReader::YoutubeReader(std::u16string_view text, CYoutubeParser& catalogue) noexcept
    : text_(upToNul(text)), catalogue_(catalogue) {}

void YoutubeReader::readStreamMap(std::u16string_view marker, bool adaptive) {
    for (auto at = text_.find(marker); at != text_.npos; at = text_.find(marker, at)) {
        const auto start = text_.find_first_not_of(u" \":", at + marker.size());
        const auto url = text_.find(u"url", start);
        const auto end = text_.find(u'"', url);
        if (end == text_.npos) return;
        readPieces(text_.substr(start, end - start), kEscapedAmpersand, adaptive);
        at = end + 1;
    }
}

void YoutubeReader::readReplyMap(std::u16string_view name, bool adaptive) {
    for (auto at = text_.find(name); at != text_.npos; at = text_.find(name, at)) {
        at += name.size();
        if (!text_.substr(at).starts_with(u'=')) continue;
        std::u16string map(upTo(text_.substr(at + 1), u'&'));
        at += 1 + map.size();
        unescaper_.inPlace(map);
        readPieces(map, u"&", adaptive);
    }
}

void YoutubeReader::readPieces(std::u16string_view map, std::u16string_view ampersand, bool adaptive) {
    for (const View piece : piecesOf(map, u',')) readPiece(piece, ampersand, adaptive);
}

void YoutubeReader::readPiece(std::u16string_view piece, std::u16string_view ampersand, bool adaptive) {
    const auto written = fieldOf(piece, u"url=", ampersand);
    if (!written || !contains(*written, kMediaPath)) return;
    std::u16string url =
        plainUrl(before(*written, ampersand), {.cutAtEscapedAmpersand = true, .unescapeBackslashes = false});
    if (!contains(url, u"signature=")) {
        if (const auto signature = fieldOf(piece, u"sig=", ampersand)) {
            url += u"&signature=";
            url += before(*signature, ampersand);
        }
    }
    if (catalogue_.holds(url)) return;
    const View itag = fieldOf(piece, u"itag=", ampersand).value_or(View{});
    const auto digits = std::min(itag.find_first_not_of(u' '), itag.size());
    catalogue_.addEntry(std::move(url), numberAtStart(itag.substr(digits)), adaptive);
}

void YoutubeReader::readStreamingData() {
    for (const auto& marker : kStreamingMarkers) {
        readStreamingDataBehind(marker.text, marker.encoded);
        if (!catalogue_.entries().empty()) return;
    }
}

void YoutubeReader::readStreamingDataBehind(std::u16string_view marker, bool encoded) {
    auto at = text_.find(marker);
    if (at == text_.npos) return;
    at += marker.size();
    while ((at = text_.find(u"http", at)) != text_.npos) {
        const View ahead = text_.substr(0, at);
        const View end = ahead.ends_with(kEscapedQuote)              ? kEscapedQuote
                         : encoded && ahead.ends_with(kEncodedQuote) ? kEncodedQuote
                                                                     : View(u"\"");
        const auto behind = text_.find(end, at);
        if (behind == text_.npos) return;
        addStreamingUrl(text_.substr(at, behind - at));
        at = behind + end.size();
    }
}

void YoutubeReader::addStreamingUrl(std::u16string_view written) {
    if (!contains(written, kMediaPath)) return;
    std::u16string url = plainUrl(written, {.cutAtEscapedAmpersand = false, .unescapeBackslashes = true});
    if (catalogue_.holds(url)) return;
    const std::uint32_t itag = itagInUrl(url);
    catalogue_.addEntry(std::move(url), itag, itag >= kFirstAdaptiveItag);
}

std::u16string YoutubeReader::plainUrl(std::u16string_view written, const UrlCleaning& cleaning) {
    std::u16string url(written);
    if (!contains(url, u"\\/")) unescaper_.inPlace(url);
    return cleanStreamUrl(std::move(url), cleaning);
}

std::optional<std::u16string> YoutubeReader::pageTitle() {
    auto title = titleBetween(u"\"title\":\"", u"\",\"");
    if (title) title = withoutJsonEscapes(*title);
    return title;
}

std::optional<std::u16string> YoutubeReader::pageTitleInAnyForm() {
    if (auto title = pageTitle()) return title;
    auto title = titleBetween(u"\\\"title\\\":\\\"", u"\\\",\\\"");
    if (title) title = withoutJsonEscapes(*title);
    return title;
}

std::optional<std::u16string> YoutubeReader::replyTitle() { return titleBetween(u"title=", u"&"); }

std::optional<std::u16string> YoutubeReader::titleBetween(std::u16string_view opening,
                                                          std::u16string_view closing) {
    const auto start = text_.find(opening);
    if (start == text_.npos) return std::nullopt;
    const View rest = text_.substr(start + opening.size());
    const auto end = rest.find(closing);
    if (end == rest.npos) return std::nullopt;
    std::string title = utf8FromUtf16(rest.substr(0, end));
    std::ranges::replace(title, '+', ' ');
    unescaper_.inPlace(title);
    return utf16FromUtf8(title);
}

}  // namespace zab
