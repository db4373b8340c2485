// What holds for every page, however it is cut; shared by the property test and the fuzz target.
#pragma once

#include <string>
#include <string_view>

#include "media/parsers/must.h"
#include "web/html_parser.h"

namespace zabtest {

inline constexpr std::string_view kTestPage = "http://host/dir/page.html";

inline std::string linesOf(const zab::CLinksArray& links) {
    std::string lines;
    for (const zab::PageLink& link : links) {
        lines.append(link.url).append("|").append(link.text).append("|");
        lines.append(std::to_string(static_cast<int>(link.source)))
            .append(link.playable ? "!" : "")
            .append("\n");
    }
    return lines;
}

/// The links of a page that arrives in pieces of `chunk` bytes.
inline std::string harvest(std::string_view markup, std::size_t chunk) {
    zab::CHTMLParser parser(kTestPage, kTestPage);
    for (std::size_t at = 0; at < markup.size(); at += chunk) {
        const std::string piece(markup.substr(at, chunk));  // a block of its own, for the sanitizer
        parser.feed(piece);
    }
    parser.finish();
    return linesOf(parser.links());
}

inline void checkHtml(std::string_view markup) {
    const std::string whole = harvest(markup, markup.size() + 1);
    for (const std::size_t chunk : {1, 2, 3, 7, 64}) must(harvest(markup, chunk) == whole);

    zab::CHTMLParser parser(kTestPage, kTestPage);
    parser.feed(markup);
    parser.finish();
    must(static_cast<std::size_t>(parser.links().count()) <= zab::CLinkProcessor::kMostLinks);
    for (const zab::PageLink& link : parser.links()) {
        must(link.url.size() <= zab::CLinkProcessor::kMostUrlBytes);
        must(link.text.size() <= zab::CHTMLParser::kMostTextBytes);
        must(link.url.find_first_of(" \t\r\n") == std::string::npos);
    }
}

}  // namespace zabtest
