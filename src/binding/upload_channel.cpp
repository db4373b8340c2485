#include "binding/upload_channel.h"

namespace zab {

InterfacePtr<nsIUploadChannel> GetUploadChannel(nsISupports* channel) noexcept {
    if (auto own = query<nsIUploadChannel>(channel)) return own;
    auto newer = query<nsIUploadChannel17>(channel);
    if (!newer) return {};
    return adapted<nsUploadChannel2, nsIUploadChannel>(std::move(newer));
}

}  // namespace zab
