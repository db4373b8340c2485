// What holds for every page, however it is cut, and for every script; shared by unit tests and fuzz targets.
#pragma once

#include <set>
#include <string>
#include <string_view>

#include "binding/text.h"
#include "media/parsers/must.h"
#include "web/html_parser.h"
#include "web/script_links.h"
#include "web/url.h"
#include "web/url_resolve.h"

namespace zabtest {

inline constexpr std::string_view kTestPage = "http://h/d/page.html", kTestFolder = "http://h/d/";

/// The links of a page that arrives in pieces of `chunk` bytes, as "source url [text];": "L", "M", "S" for the
/// sources, "P" for what plays; an address in the page's folder as its rest.
inline std::string harvest(std::string_view markup, std::size_t chunk) {
    zab::CHTMLParser parser(kTestPage, kTestPage);
    for (std::size_t at = 0; at < markup.size(); at += chunk) {
        const std::string piece(markup.substr(at, chunk));  // a block of its own, for the sanitizer
        parser.feed(piece);
    }
    parser.finish();
    must(static_cast<std::size_t>(parser.links().count()) <= zab::CLinkProcessor::kMostLinks);
    std::string all;
    std::set<std::string_view> known;
    for (const zab::PageLink& link : parser.links()) {
        must(link.url.size() <= zab::CLinkProcessor::kMostUrlBytes);
        must(link.text.size() <= zab::CHTMLParser::kMostTextBytes);
        must(link.url.find_first_of(" \t\r\n") == std::string::npos);
        must(zab::isWebScheme(zab::schemeOf(link.url)) && !zab::hostOf(link.url).empty());
        must(known.insert(zab::upTo(link.url, '#')).second);
        const std::string_view path = zab::pathOf(link.url);
        must(path.find("/../") == std::string_view::npos && !path.ends_with("/.."));
        all += link.playable ? 'P' : "LSM"[static_cast<int>(link.source)];
        all.append(" ")
            .append(link.url, link.url.starts_with(kTestFolder) ? kTestFolder.size() : 0)
            .append(link.text.empty() ? "" : " [" + link.text + "]")
            .append(";");
    }
    return all;
}

/// However it is cut.
inline std::string linksOf(std::string_view markup) {
    std::string whole = harvest(markup, markup.size() + 1);
    for (const std::size_t chunk : {1, 2, 3, 7, 64}) must(harvest(markup, chunk) == whole);
    return whole;
}

inline void checkHtml(std::string_view markup) { linksOf(markup); }

inline void checkScriptLinks(std::string_view script) {
    std::size_t bytes = 0;
    zab::CLinksInJavaParser(script).parse([&](std::string_view address) {
        must(!address.empty());
        must(address.find_first_of(" \t\r\n<>\"") == std::string_view::npos);
        bytes += address.size();
    });
    // Two digits of a "\xNN" can become two bytes, never more than were written.
    must(bytes <= script.size());
}

}  // namespace zabtest
