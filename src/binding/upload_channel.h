// One way to a channel's upload stream, whichever generation of the interface the browser has.
#pragma once

#include <utility>

#include "binding/adapter.h"
#include "binding/interface_ptr.h"
#include "binding/interfaces/streams.h"

namespace zab {

/// Serves the older generation on top of the newer one, whose length has 64 bits.
class nsUploadChannel2 final : public Adapter<nsUploadChannel2, nsIUploadChannel> {
  public:
    explicit nsUploadChannel2(InterfacePtr<nsIUploadChannel17> channel) noexcept
        : channel_(std::move(channel)) {}

    /// A length of -1, ask the stream, stays -1.
    nsresult SetUploadStream(nsIInputStream* stream, const nsACString* contentType, int32_t length) override {
        return channel_->SetUploadStream(stream, contentType, length);
    }
    nsresult GetUploadStream(nsISupports** stream) override { return channel_->GetUploadStream(stream); }

  private:
    InterfacePtr<nsIUploadChannel17> channel_;
};

/// The channel's upload interface in the module's layout; nothing when it has neither generation.
InterfacePtr<nsIUploadChannel> GetUploadChannel(nsISupports* channel) noexcept;

}  // namespace zab
