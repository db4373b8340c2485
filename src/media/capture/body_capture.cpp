#include "media/capture/body_capture.h"

#include <utility>

#include "media/capture/handlers/handlers.h"
#include "web/url.h"

namespace zab {
namespace {

/// A part of a stream that is no page of its own.
bool isPlayback(std::string_view url, std::uint32_t loadFlags) noexcept {
    KindFacts facts;
    facts.url = url;
    facts.host = hostOf(url);
    facts.rest = behindHost(url);
    return (loadFlags & kTopLevelLoad) == 0 && isVideoPlayback(facts);
}

}  // namespace

CaptureContext captureContextOf(const CapturedHeaders& headers, const Decision& decision) {
    CaptureContext context;
    context.url = headers.url;
    context.contentType = headers.contentType;
    context.fileName = headers.fileName;
    context.extension = decision.extension;
    context.contentLength = decision.contentLength;
    return context;
}

BodyCapture::BodyCapture(MediaKind kind, CaptureContext context)
    : kind_(kind), context_(std::move(context)), collector_(kind, context_.contentLength) {}

bool BodyCapture::add(std::string_view chunk) {
    const std::string_view counts = collector_.add(chunk);
    if (kind_ == MediaKind::hdsFragment)
        drmChecker_.feed({reinterpret_cast<const std::uint8_t*>(counts.data()), counts.size()});
    return !wantsMore();
}

std::vector<MediaEntry> BodyCapture::finish(CapturePage& page) {
    const BodyCollector collected = std::exchange(collector_, BodyCollector());
    const auto body = collected.whole();
    if (!body) return {};
    CaptureRun run(context_, page);
    if (kind_ == MediaKind::hdsFragment) {
        if (drmChecker_.isPlayable()) offerHdsFragment(run);
    } else if (const BodyHandler handler = bodyHandlerOf(kind_)) {
        handler(*body, run);
    }
    return run.takeEntries();
}

bool mayBeEntry(const Decision& decision, std::uint32_t loadFlags, std::string_view url) noexcept {
    return decision.outcome == Outcome::browser && examinationOf(decision.status) == Examination::content &&
           (decision.offer || isPlayback(url, loadFlags));
}

std::vector<MediaEntry> captureResponse(const Decision& decision, std::uint32_t loadFlags,
                                        const CaptureContext& context, CapturePage& page) {
    if (!mayBeEntry(decision, loadFlags, context.url)) return {};
    CaptureRun run(context, page);
    if (decision.offer) {
        offerOwnEntry(run);
    } else {
        offerPlayback(run);
    }
    return run.takeEntries();
}

}  // namespace zab
