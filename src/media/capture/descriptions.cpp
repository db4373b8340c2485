#include "media/capture/descriptions.h"

#include "binding/text.h"
#include "media/parsers/url_unescape.h"
#include "web/encoding.h"
#include "web/url.h"

namespace zab {

std::string joined(std::initializer_list<std::string_view> parts) {
    std::string all;
    for (const std::string_view part : parts) {
        if (part.empty()) continue;
        if (!all.empty()) all += ' ';
        all += part;
    }
    return all;
}

std::string_view withoutNamePrefix(std::string_view fileName) noexcept {
    return fileName.starts_with(kUtf8NamePrefix) ? fileName.substr(kUtf8NamePrefix.size()) : fileName;
}

std::string fileNameOf(std::string_view url) {
    return std::string(withoutNamePrefix(percentDecoded(lastSegmentOf(url))));
}

std::string percentDecoded(std::string_view text) {
    std::string decoded(text);
    unescapePortably(decoded);
    return decoded;
}

}  // namespace zab
