// The controllers as they stand in this process: their one message table, over its windows.
#pragma once

#include <atomic>
#include <cstdint>

#include "page/platform.h"
#include "ui/controllers.h"

namespace zab {

/// The windows that the host has to tell apart; 0: there is none now. Any thread.
struct ControllerWindows {
    std::atomic<WindowHandle> process{0};
    std::atomic<WindowHandle> own{0};  // of the browser's thread
};

ControllerWindows& controllerWindows() noexcept;
Controllers& controllers();

/// Whether this is an open page controller of this process. Any thread.
bool isPageController(WindowHandle window) noexcept;
/// False: the message has no room, or the window is gone. Any thread.
bool postToWindow(WindowHandle window, std::uint32_t message, std::uintptr_t lParam) noexcept;
/// Whether input, painting or a timer waits for the calling thread.
bool othersWait() noexcept;

}  // namespace zab
