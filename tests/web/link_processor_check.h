// What holds for every list of references; shared with the fuzz target.
#pragma once

#include <set>
#include <string>
#include <string_view>

#include "binding/pieces.h"
#include "binding/text.h"
#include "media/parsers/must.h"
#include "web/link_processor.h"
#include "web/url.h"
#include "web/url_resolve.h"

namespace zabtest {

/// One reference per line; a line that begins with "=" is the page's base.
inline void checkLinkProcessor(std::string_view lines) {
    zab::CLinkProcessor processor("http://host/dir/page", "http://host/dir/page");
    for (const std::string_view line : zab::piecesOf(lines, '\n')) {
        if (line.starts_with('=')) {
            processor.setBase(line.substr(1));
        } else {
            processor.add({.written = line});
        }
    }
    processor.finish();
    std::set<std::string_view> known;
    for (const zab::PageLink& link : processor.links()) {
        must(zab::isWebScheme(zab::schemeOf(link.url)));
        must(!zab::hostOf(link.url).empty());
        must(link.url.size() <= zab::CLinkProcessor::kMostUrlBytes);
        must(known.insert(zab::upTo(link.url, '#')).second);
        const std::string_view path = zab::pathOf(link.url);
        must(path.find("/../") == std::string_view::npos && !path.ends_with("/.."));
    }
}

}  // namespace zabtest
