#include "ui/link_lines.h"

#include <algorithm>
#include <unordered_set>

#include "binding/pieces.h"
#include "binding/text.h"
#include "binding/utf.h"
#include "web/url.h"

namespace zab {
namespace {

constexpr std::string_view kSchemes[] = {"http", "https", "ftp"};

}  // namespace

std::vector<std::string> linksOfLines(std::u16string_view lines) {
    std::vector<std::string> links;
    std::unordered_set<std::string> seen;
    for (const std::u16string_view line : piecesOf(lines, u'\n')) {
        if (links.size() == kMostSelectedLinks) break;
        std::string link(trim(utf8FromUtf16(upToNul(line))));
        if (isOneOfIgnoringCase(schemeOf(link), kSchemes) && seen.emplace(withoutFragment(link)).second)
            links.push_back(std::move(link));
    }
    return links;
}

}  // namespace zab
