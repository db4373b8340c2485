// The owner of a handle that CloseHandle closes.
#pragma once

#include "binding/owner.h"
#include "binding/wide_win32.h"

namespace zab {

struct HandleTraits {
    using Raw = HANDLE;
    static constexpr Raw none() noexcept { return nullptr; }
    static void close(Raw handle) noexcept { CloseHandle(handle); }
};
using Handle = Owner<HandleTraits>;

}  // namespace zab
