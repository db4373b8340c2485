// A response that is a media file itself.

#include <algorithm>

#include "binding/text.h"
#include "intercept/mime_classes.h"
#include "media/capture/descriptions.h"
#include "media/capture/handlers/handlers.h"
#include "media/parsers/stream_urls.h"
#include "web/url.h"

namespace zab {
namespace {

bool isFlv(const CaptureContext& context) noexcept {
    return equalsIgnoringCase(ClassifyMimeType(context.contentType), kFlvExtension) ||
           endsWithIgnoringCase(pathOf(context.url), ".flv");
}

}  // namespace

bool isPartOfStream(const CaptureRun& run) {
    const std::string_view url = run.context().url;
    return run.page().ask([url](const OfferedMedia& media) { return media.streams().isPart(url); });
}

void offerOwnEntry(CaptureRun& run) {
    const CaptureContext& context = run.context();
    if (isPartOfStream(run)) return;
    MediaEntry entry = run.plainEntry(withoutRange(context.url));
    if (const auto name = withoutNamePrefix(context.fileName); !name.empty()) entry.description = name;
    entry.extension = isFlv(context) ? std::string(kFlvExtension) : lowered(context.extension);
    entry.kind = entryKindOf(entry.extension);
    entry.size = static_cast<std::uint64_t>(std::max<std::int64_t>(context.contentLength, 0));
    run.offer(std::move(entry));
}

}  // namespace zab
