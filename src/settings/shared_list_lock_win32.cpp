#include <atomic>

#include "binding/handle_win32.h"
#include "settings/shared_list_lock.h"

namespace zab {
namespace {

constexpr DWORD kWaitMs = 1000;

std::atomic<HANDLE> g_mutex{nullptr};

}  // namespace

SharedListLock::SharedListLock(OnTimeout onTimeout) noexcept : onTimeout_(onTimeout) {
    const HANDLE mutex = g_mutex.load(std::memory_order_acquire);
    if (mutex == nullptr) return;
    // A holder that ended without giving the mutex back left lists that are whole all the same: every change of
    // a list is complete before anything in it can fail.
    const DWORD result = WaitForSingleObject(mutex, kWaitMs);
    held_ = result == WAIT_OBJECT_0 || result == WAIT_ABANDONED;
}

SharedListLock::~SharedListLock() {
    if (held_) ReleaseMutex(g_mutex.load(std::memory_order_acquire));
}

void createSharedListMutex() noexcept {
    if (g_mutex.load(std::memory_order_acquire) != nullptr) return;
    Handle made(CreateMutexA(nullptr, FALSE, nullptr));
    HANDLE none = nullptr;
    if (made && g_mutex.compare_exchange_strong(none, made.get())) (void)made.release();
}

void closeSharedListMutex() noexcept { const Handle last(g_mutex.exchange(nullptr)); }

}  // namespace zab
