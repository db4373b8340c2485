// Vimeo's player configurations and Facebook's pages: plain addresses of whole files.

#include "binding/text.h"
#include "binding/utf.h"
#include "media/capture/descriptions.h"
#include "media/capture/handlers/handlers.h"
#include "media/parsers/facebook.h"
#include "media/parsers/vimeo.h"
#include "web/json_text.h"

namespace zab {
namespace {

/// Of a quality such as "720p"; 0 of any other.
std::uint32_t heightOf(std::string_view quality) noexcept {
    const bool isHeight = quality.size() > 1 && quality.find_first_not_of("0123456789") == quality.size() - 1 &&
                          quality.back() == 'p';
    return isHeight ? entryNumber(quality) : 0;
}

}  // namespace

void offerVimeo(std::string_view body, CaptureRun& run) {
    CVimeoParser parser;
    parser.parse(body);
    const std::string title = withoutJsonEscapes(parser.title());
    for (const VimeoRendition& rendition : parser.renditions()) {
        MediaEntry entry = run.entry();
        entry.link = withoutJsonEscapes(rendition.url);
        entry.description = joined({title, rendition.quality});
        entry.extension = kMp4Extension;
        entry.height = heightOf(rendition.quality);
        if (!run.offer(std::move(entry))) return;
    }
}

void offerFacebook(std::string_view body, CaptureRun& run) {
    CFacebookParser parser;
    parser.parse(utf16FromUtf8(upToNul(body)));
    for (const FacebookVideoEntry& video : parser.entries()) {
        MediaEntry entry = run.entry();
        entry.link = withoutJsonEscapes(utf8FromUtf16(video.url));
        entry.description = joined({entry.page.title, video.isHd != 0 ? "HD" : ""});
        entry.extension = kMp4Extension;
        entry.duration = entryNumber(video.durationSeconds);
        if (!run.offer(std::move(entry))) return;
    }
}

}  // namespace zab
