// This module as Windows holds it, and threads that keep it loaded while they run its code.
#pragma once

#include "binding/guard.h"
#include "binding/throwing_win32.h"
#include "binding/wide_win32.h"

namespace zab {

/// The module, which stays loaded to the end of the process from now on; null when the system refuses.
HMODULE pinnedModule() noexcept;

/// Gives back a thread's reference to the module, and ends the thread.
[[noreturn]] void leaveThread() noexcept;

/// The start of a thread that runs `work`, a function of the parameter, and keeps the module loaded until then.
template <auto work>
DWORD WINAPI moduleThread(void* parameter) noexcept {
    if (prepareThreadToThrow()) guarded([&] { work(parameter); });
    leaveThread();
}

/// Starts a thread at `entry`, a moduleThread. Nobody waits for it. Its ID; 0: there is no thread.
DWORD startThread(LPTHREAD_START_ROUTINE entry, void* parameter) noexcept;

}  // namespace zab
