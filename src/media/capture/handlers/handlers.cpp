#include "media/capture/handlers/handlers.h"

#include <algorithm>
#include <iterator>

namespace zab {
namespace {

struct HandlerRow {
    MediaKind kind;
    BodyHandler handler;
};

constexpr HandlerRow kHandlers[] = {
    {MediaKind::page, offerPage},
    {MediaKind::linkText, offerLinkText},
    {MediaKind::youtubeVideoInfo, offerYouTubeVideoInfo},
    {MediaKind::youtubeWatchPage, offerYouTubeWatchPage},
    {MediaKind::fragmentManifest, offerFragmentManifest},
    {MediaKind::hls, offerHls},
    {MediaKind::vimeoPlayer, offerVimeo},
    {MediaKind::hds, offerHds},
    {MediaKind::youtubeDash, offerYouTubeDash},
    {MediaKind::dash, offerDash},
    {MediaKind::facebook, offerFacebook},
    {MediaKind::sniff, offerSniffed},
};
// All but "none", and the fragments that are looked at as they come.
static_assert(std::size(kHandlers) == kMediaKindCount - 2);

}  // namespace

BodyHandler bodyHandlerOf(MediaKind kind) noexcept {
    const auto row = std::ranges::find(kHandlers, kind, &HandlerRow::kind);
    return row == std::end(kHandlers) ? nullptr : row->handler;
}

}  // namespace zab
