#include "binding/browser_thread.h"

#include <atomic>
#include <thread>

namespace zab {
namespace {

std::atomic<std::thread::id> g_browserThread{};

}  // namespace

void noteBrowserThread() noexcept { g_browserThread.store(std::this_thread::get_id()); }

bool onBrowserThread() noexcept {
    const auto noted = g_browserThread.load();
    return noted == std::thread::id{} || noted == std::this_thread::get_id();
}

}  // namespace zab
