// What holds for every text that the parsers of single sites may meet; shared by the property tests and the
// fuzz targets.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "binding/text.h"
#include "binding/utf.h"
#include "media/parsers/facebook.h"
#include "media/parsers/must.h"
#include "media/parsers/stream_urls.h"
#include "media/parsers/vimeo.h"
#include "media/parsers/youtube_parser.h"

namespace zabtest {

/// Hands UTF-8 text on as UTF-16 in a block of exactly its size.
template <class Use>
auto onWide(std::string_view text, Use use) {
    const std::u16string wide = zab::utf16FromUtf8(text);
    const std::vector<char16_t> block(wide.begin(), wide.end());
    return use(std::u16string_view(block.data(), block.size()));
}

/// "hd URL SECONDS;" or "sd URL SECONDS;" for each entry.
inline std::string facebookEntries(std::string_view text) {
    zab::CFacebookParser parser;
    const bool found = onWide(text, [&parser](auto wide) { return parser.parse(wide); });
    std::string all;
    for (const auto& entry : parser.entries())
        all += (entry.isHd != 0 ? "hd " : "sd ") + zab::utf8FromUtf16(entry.url) + ' ' +
               std::to_string(entry.durationSeconds) + ';';
    must(found == !all.empty());
    return all;
}

/// "URL QUALITY;" for each rendition, and the title.
inline std::string vimeoRenditions(std::string_view text) {
    zab::CVimeoParser parser;
    const bool found = parser.parse(text);
    std::string all;
    for (const auto& rendition : parser.renditions()) all += rendition.url + ' ' + rendition.quality + ';';
    must(found == !all.empty());
    return all + parser.title();
}

/// "ITAG URL;", or "ITAG+URL;" for an adaptive one, for each entry, a "!" behind one with a twin; and the
/// title.
template <auto kParse>
std::string youtubeCatalogue(std::string_view text) {
    zab::CYoutubeParser parser;
    const auto count = onWide(text, [&parser](auto wide) { return (parser.*kParse)(wide); });
    must(static_cast<std::size_t>(count) == parser.entries().size());
    std::string all;
    for (const auto& entry : parser.entries())
        all += std::to_string(entry.itag) + (entry.adaptive != 0 ? '+' : ' ') + zab::utf8FromUtf16(entry.url) +
               (entry.hasProgressiveTwin != 0 ? "!;" : ";");
    return all + zab::utf8FromUtf16(parser.title());
}
inline constexpr auto youtubePage = youtubeCatalogue<&zab::CYoutubeParser::parsePage>;
inline constexpr auto youtubeReply = youtubeCatalogue<&zab::CYoutubeParser::parseVideoInfo>;

/// Nothing behind a NUL counts.
template <auto kRead>
void checkSite(std::string_view text) {
    must(kRead(std::string(text).append(1, '\0').append(text)) == kRead(text));
}

inline void checkYoutube(std::string_view text) {
    checkSite<youtubePage>(text);
    checkSite<youtubeReply>(text);
    zab::CYoutubeParser parser;
    const auto captured = onWide(
        text, [&](auto wide) { return parser.parseCaptured(wide, u"http://h/videoplayback?id=1&itag=22"); });
    must(captured.match == zab::CYoutubeParser::Match::none || !parser.entries().empty());
    for (const auto& entry : parser.entries()) {
        bool isWebM = false;
        std::uint32_t itag = 0;
        must(entry.url.find(u',') == entry.url.npos);
        must(parser.findByUrl(entry.url, false, isWebM, itag) && itag == entry.itag);
    }
}

/// The first two lines of the text are the URLs.
inline void checkSameStream(std::string_view text) {
    const std::u16string first = zab::utf16FromUtf8(zab::upTo(text, '\n'));
    const std::u16string second = zab::utf16FromUtf8(text.substr(std::min(first.size() + 1, text.size())));
    const std::u16string_view a = first, b = second;
    must(!zab::sameStream(a, b, true) || zab::sameStream(a, b, false));
    must(zab::sameStream(a, a, true) == (a.size() >= 10 && a.find(u'?') != a.npos));
    must(!zab::sameIdAndItag(a, b) || zab::sameId(a, b));
}

}  // namespace zabtest
