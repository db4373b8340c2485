#include "zabprobe/shown.h"

#include "binding/text.h"
#include "binding/utf.h"

namespace zabprobe {

std::string shownUrl(std::string_view url) {
    constexpr std::string_view kEllipsis = "...";
    std::string shown(zab::upTo(zab::upTo(url, '#'), '?'));
    if (const auto at = shown.find('@'), mark = shown.find("://");
        at != std::string::npos && mark != std::string::npos && at < shown.find('/', mark + 3))
        shown.erase(mark + 3, at - mark - 2);
    if (shown.size() < url.size() && zab::contains(url, "?")) shown += "?...";
    if (shown.size() > kShownUrlBytes) {
        const std::size_t kept = (kShownUrlBytes - kEllipsis.size()) / 2;
        shown = shown.substr(0, kept).append(kEllipsis).append(shown, shown.size() - kept, kept);
    }
    for (char& c : shown)
        if (static_cast<unsigned char>(c) < ' ' || c == '\x7F') c = '?';
    return zab::wellFormedUtf8(shown);
}

void appendCell(std::string& line, std::string_view word, std::size_t width) {
    line.append(word).append(word.size() < width ? width - word.size() : 1, ' ');
}

}  // namespace zabprobe
