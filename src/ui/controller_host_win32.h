// The controllers as they stand in this process: their one message table, over real windows.
#pragma once

#include <atomic>

#include "binding/wide_win32.h"
#include "ui/controllers.h"

namespace zab {

inline WindowHandle handleOf(HWND window) noexcept { return reinterpret_cast<WindowHandle>(window); }
inline HWND windowOf(WindowHandle handle) noexcept { return reinterpret_cast<HWND>(handle); }

/// The windows that the host has to tell apart; null: there is none now. Any thread.
struct ControllerWindows {
    std::atomic<HWND> process{nullptr};
    std::atomic<HWND> own{nullptr};  // of the browser's thread
};

ControllerWindows& controllerWindows() noexcept;
/// Whether this is an open page controller of this process. Any thread.
bool isPageController(WindowHandle window) noexcept;
Controllers& controllers();

}  // namespace zab
