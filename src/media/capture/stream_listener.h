// The listener that the browser feeds with a copy of a response's body.
//
// The extension's helper holds it while the response lasts and gives it up at the end, which is also the end of
// a body whose length is not known: the last release runs the body's handler. It never changes the body and
// never stops the response, and no exception leaves it. Main thread only.
#pragma once

#include "binding/browser_object.h"
#include "binding/interfaces/helpers.h"
#include "media/capture/body_capture.h"
#include "media/capture/browser_page.h"

namespace zab {

class IMDBaseStreamListener final : public BrowserObject<IMDBaseStreamListener, iZABSListener> {
  public:
    IMDBaseStreamListener(const KeptResponse& response, CaptureContext context);

    nsresult WantsMoreData(uint32_t* wants) override;
    /// Always succeeds.
    nsresult OnResponseData(const uint8_t* bytes, uint32_t length, uint32_t reserved) override;
    /// Flag 1: the memory too.
    void DeleteThis(uint32_t flags) override;

    void forget(const DocumentKey& document) noexcept { page_.forget(document); }

  private:
    ~IMDBaseStreamListener();

    void finish();

    MediaKind kind_;
    BrowserPage page_;
    BodyCapture capture_;
};

}  // namespace zab
