#include "binding/browser_thread.h"

#include <atomic>
#include <thread>

namespace zab {
namespace {

std::atomic<std::thread::id> g_browserThread{};

}  // namespace

void noteBrowserThread() noexcept {
    auto none = std::thread::id{};
    g_browserThread.compare_exchange_strong(none, std::this_thread::get_id());
}

bool onBrowserThread() noexcept { return g_browserThread.load() == std::this_thread::get_id(); }

}  // namespace zab
