// Windows as the core numbers them, and as Windows knows them.
#pragma once

#include "binding/wide_win32.h"
#include "page/platform.h"

namespace zab {

inline WindowHandle handleOf(HWND window) noexcept { return reinterpret_cast<WindowHandle>(window); }
inline HWND windowOf(WindowHandle handle) noexcept { return reinterpret_cast<HWND>(handle); }

}  // namespace zab
