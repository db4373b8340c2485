// What becomes of a response that stays with the browser and is, or describes, media.
//
// The interface through which the examination of responses reaches the capture of media. Nothing stands behind
// it yet: the decision is made, no listener is attached and no entry is offered.
#pragma once

#include <memory>

#include "binding/interfaces/supports.h"
#include "intercept/decision.h"
#include "media/capture/media_entry.h"

namespace zab {

struct KeptResponse {
    nsISupports* channel;
    const CapturedHeaders& headers;
    const Decision& decision;
};

class MediaCapture {
  public:
    /// The decision names a listener kind: the body is to be read.
    virtual void listen(const KeptResponse& response) = 0;
    /// The response itself is media of its page.
    virtual void offer(const KeptResponse& response) = 0;

  protected:
    ~MediaCapture() = default;
};

MediaCapture& mediaCapture() noexcept;

/// Puts an entry into the list of its page, when the panel gate lets it and the page is known there. True: the
/// page's button may show it.
bool fileEntry(std::unique_ptr<MediaEntry> entry);

}  // namespace zab
