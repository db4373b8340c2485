// What holds for every text that the parsers of single sites may meet; shared by the property tests and the
// fuzz targets.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "binding/text.h"
#include "binding/utf.h"
#include "media/parsers/facebook.h"
#include "media/parsers/must.h"
#include "media/parsers/stream_urls.h"
#include "media/parsers/url_unescape.h"
#include "media/parsers/vimeo.h"
#include "media/parsers/youtube_parser.h"

namespace zabtest {

using Lines = std::vector<std::string>;

template <class C>
std::size_t countOf(std::basic_string_view<C> text, std::basic_string_view<C> piece) {
    std::size_t count = 0;
    for (auto at = text.find(piece); at != text.npos; at = text.find(piece, at + 1)) ++count;
    return count;
}

/// UTF-8 text as UTF-16 in a block of exactly its size.
class ExactWide {
  public:
    explicit ExactWide(std::string_view text) {
        const std::u16string wide = zab::utf16FromUtf8(text);
        size_ = wide.size();
        block_ = std::make_unique<char16_t[]>(size_);
        wide.copy(block_.get(), size_);
    }
    [[nodiscard]] std::u16string_view view() const { return {block_.get(), size_}; }

  private:
    std::size_t size_;
    std::unique_ptr<char16_t[]> block_;
};

/// "hd URL SECONDS" or "sd URL SECONDS" for each entry.
inline Lines facebookEntries(std::string_view text) {
    const ExactWide wide(text);
    zab::CFacebookParser parser;
    const bool found = parser.parse(wide.view());
    Lines lines;
    for (const auto& entry : parser.entries())
        lines.push_back((entry.isHd != 0 ? "hd " : "sd ") + zab::utf8FromUtf16(entry.url) + ' ' +
                        std::to_string(entry.durationSeconds));
    must(found == !lines.empty());
    return lines;
}

inline void checkFacebook(std::string_view text) {
    const Lines entries = facebookEntries(text);
    must(entries.size() <= 2 * countOf<char>(text, "videoData"));
    must(facebookEntries(text) == entries);
}

/// The title, then "URL QUALITY" for each rendition.
inline Lines vimeoRenditions(std::string_view text) {
    zab::CVimeoParser parser;
    const bool found = parser.parse(text);
    Lines lines{parser.title()};
    for (const auto& rendition : parser.renditions()) lines.push_back(rendition.url + ' ' + rendition.quality);
    must(found == (lines.size() > 1));
    return lines;
}

inline void checkVimeo(std::string_view text) {
    const Lines renditions = vimeoRenditions(text);
    must(renditions.size() <= 1 + countOf<char>(text, "{"));
    must(vimeoRenditions(text) == renditions);
}

/// "TITLE", then "ITAG URL" for each progressive and "ITAG+URL" for each adaptive entry; a "!" ends one with a
/// twin.
inline Lines catalogueOf(const zab::CYoutubeParser& parser) {
    Lines lines{zab::utf8FromUtf16(parser.title())};
    for (const auto& entry : parser.entries())
        lines.push_back(std::to_string(entry.itag) + (entry.adaptive != 0 ? '+' : ' ') +
                        zab::utf8FromUtf16(entry.url) + (entry.hasProgressiveTwin != 0 ? "!" : ""));
    return lines;
}

enum class As { page, reply };
inline Lines youtubeCatalogue(std::string_view text, As as = As::page) {
    const ExactWide wide(text);
    zab::CYoutubeParser parser;
    const auto count = as == As::page ? parser.parsePage(wide.view()) : parser.parseVideoInfo(wide.view());
    must(static_cast<std::size_t>(count) == parser.entries().size());
    return catalogueOf(parser);
}

inline void checkYoutube(std::string_view text) {
    for (const As as : {As::page, As::reply}) {
        const Lines catalogue = youtubeCatalogue(text, as);
        must(youtubeCatalogue(text, as) == catalogue);
    }
    const ExactWide wide(text);
    zab::CYoutubeParser parser;
    const auto captured = parser.parseCaptured(wide.view(), u"http://h/videoplayback?id=1&itag=22");
    must(captured.match == zab::CYoutubeParser::Match::none || !parser.entries().empty());
    for (std::size_t i = 0; i < parser.entries().size(); ++i) {
        bool isWebM = false;
        std::uint32_t itag = 0;
        const auto& entry = parser.entries()[i];
        must(entry.url.find(u',') == entry.url.npos);
        must(parser.findByUrl(entry.url, false, isWebM, itag) && itag == entry.itag);
    }
}

/// "Is in", letter for letter as a search for a substring.
inline bool isInQuery(std::u16string_view parameter, std::u16string_view url) {
    const auto query = url.substr(url.find(u'?') + 1);
    for (auto at = query.find(parameter); at != query.npos; at = query.find(parameter, at + 1)) {
        const auto behind = query.substr(at + parameter.size());
        if (behind.empty() || behind.front() == u'&') return true;
    }
    return false;
}

/// The first two lines of the text are the URLs.
inline void checkSameStream(std::string_view text) {
    const auto end = text.find('\n');
    const ExactWide first(text.substr(0, end)), second(end == text.npos ? text : text.substr(end + 1));
    const auto a = first.view(), b = second.view();
    must(!zab::sameStream(a, b, true) || zab::sameStream(a, b, false));
    must(zab::sameStream(a, a, true) == (a.size() >= 10 && a.find(u'?') != a.npos));
    must(!zab::sameIdAndItag(a, b) || zab::sameId(a, b));
    if (zab::sameStream(a, a, true) && zab::sameStream(b, b, true) &&
        zab::upTo(a, u'?') == zab::upTo(b, u'?')) {
        auto query = a.substr(a.find(u'?') + 1);
        while (!query.starts_with(u"id=") && query.find(u'&') != query.npos)
            query.remove_prefix(query.find(u'&') + 1);
        must(zab::sameId(a, b) == (query.starts_with(u"id=") && isInQuery(zab::upTo(query, u'&'), b)));
    }
    must(zab::withoutRange(a).size() <= a.size());
}

inline void checkUrlUnescape(std::string_view text) {
    std::string narrow(text);
    std::u16string wide(text.begin(), text.end());
    for (auto& unit : wide) unit &= 0xFF;
    zab::unescapePortably(narrow);
    zab::unescapePortably(wide);
    must(narrow.size() <= text.size() && narrow.find('\0') == narrow.npos);
    must(narrow.size() == wide.size());
    for (std::size_t i = 0; i < narrow.size(); ++i) must(static_cast<unsigned char>(narrow[i]) == wide[i]);
}

}  // namespace zabtest
