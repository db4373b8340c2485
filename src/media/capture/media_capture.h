// What becomes of a response that stays with the browser and is, or describes, media.
//
// The interface through which the examination of responses reaches the capture of media. Nothing stands behind
// it yet: the decision is made, no listener is attached and no entry is offered.
#pragma once

#include "binding/interfaces/supports.h"
#include "intercept/decision.h"

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

}  // namespace zab
