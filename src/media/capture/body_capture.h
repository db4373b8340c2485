// From the chunks of one response body to the media entries of its page.
//
// What a body listener is, without the browser: it takes chunks while wantsMore(), and once the body is
// complete (add() says so) or has ended, finish() runs the kind's handler, once.
#pragma once

#include <string_view>
#include <vector>

#include "intercept/decision.h"
#include "intercept/kinds.h"
#include "media/capture/body_collector.h"
#include "media/capture/capture_run.h"
#include "media/capture/f4f_drm_checker.h"

namespace zab {

/// What headers and decision tell of a response; what the data file says is the caller's to add.
CaptureContext captureContextOf(const CapturedHeaders& headers, const Decision& decision);

class BodyCapture {
  public:
    BodyCapture(MediaKind kind, CaptureContext context);

    [[nodiscard]] bool wantsMore() const noexcept { return collector_.wantsMore(); }

    /// True: the body is complete, finish() can run.
    bool add(std::string_view chunk);

    /// What the body offers to `page`, in order; the body is freed. Later calls give nothing.
    std::vector<MediaEntry> finish(CapturePage& page);

  private:
    MediaKind kind_;
    CaptureContext context_;
    BodyCollector collector_;
    CF4FDrmChecker drmChecker_;
};

/// Whether a response that stays with the browser may offer something by itself, without its body: as a media
/// file, or as a part of a stream of the video CDN. Never when its body is read for media.
bool mayBeEntry(const Decision& decision, std::uint32_t loadFlags, std::string_view url) noexcept;

/// What such a response offers.
std::vector<MediaEntry> captureResponse(const Decision& decision, std::uint32_t loadFlags,
                                        const CaptureContext& context, CapturePage& page);

/// A page that nobody shares, with all its media.
class LocalPage final : public CapturePage {
  public:
    explicit LocalPage(EntryPage identity = {}) : identity_(std::move(identity)) {}

    const EntryPage* identity() override { return &identity_; }
    bool ask(const std::function<bool(const OfferedMedia&)>& question) override { return question(media_); }
    void change(const std::function<void(OfferedMedia&)>& change) override { change(media_); }

    void take(std::vector<MediaEntry> entries) {
        for (MediaEntry& entry : entries) media_.offer(std::move(entry));
    }
    [[nodiscard]] const OfferedMedia& media() const noexcept { return media_; }

  private:
    EntryPage identity_;
    OfferedMedia media_;
};

}  // namespace zab
