// From the chunks of one response body to the media entries of its page.
//
// What a body listener is, without the browser: it takes chunks while wantsMore(), and once the body is
// complete (add() says so) or has ended, finish() runs the kind's handler, once.
#pragma once

#include <string_view>

#include "intercept/decision.h"
#include "media/capture/body_collector.h"
#include "media/capture/capture_run.h"
#include "media/capture/f4f_drm_checker.h"
#include "media/capture/kinds.h"

namespace zab {

/// What headers and decision tell of a response; the page and what the data file says are the caller's to add.
CaptureContext captureContextOf(const CapturedHeaders& headers, const Decision& decision);

class BodyCapture {
  public:
    BodyCapture(MediaKind kind, CaptureContext context);

    [[nodiscard]] bool wantsMore() const noexcept { return collector_.wantsMore(); }

    /// True: the body is complete, finish() can run.
    bool add(std::string_view chunk);

    /// Puts what the body offers into `page`. Later calls do nothing.
    void finish(PageMedia& page);

  private:
    MediaKind kind_;
    CaptureContext context_;
    BodyCollector collector_;
    CF4FDrmChecker drmChecker_;
    bool finished_ = false;
};

/// What a response that stays with the browser offers by itself, without its body: as a media file, or as a
/// part of a stream of the video CDN. Nothing when its body is read for media.
void captureResponse(const Decision& decision, std::uint32_t loadFlags, const CaptureContext& context,
                     PageMedia& page);

}  // namespace zab
