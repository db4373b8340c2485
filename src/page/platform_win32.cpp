#include <algorithm>
#include <utility>
#include <vector>

#include "binding/guard.h"
#include "binding/never_destroyed.h"
#include "binding/this_module_win32.h"
#include "binding/wide_win32.h"
#include "page/platform.h"

namespace zab {
namespace {

struct SoonRun {
    UINT_PTR timer;
    std::function<void()> work;
};

/// Of the browser's main thread.
std::vector<SoonRun>& soonRuns() {
    static NeverDestroyed<std::vector<SoonRun>> list;
    return list.get();
}

void CALLBACK runNow(HWND, UINT, UINT_PTR timer, DWORD) noexcept {
    KillTimer(nullptr, timer);
    guarded([&] {
        auto& list = soonRuns();
        const auto found =
            std::find_if(list.begin(), list.end(), [&](const SoonRun& run) { return run.timer == timer; });
        if (found == list.end()) return;
        const auto work = std::move(found->work);  // it may ask for another run
        list.erase(found);
        work();
    });
}

constexpr UINT kPatienceMs = 1000;  // of the browser, with a window of another thread

}  // namespace

void writeDebuggerText(const std::string& text) noexcept { OutputDebugStringA(text.c_str()); }
void writeDebuggerText(const std::u16string& text) noexcept { OutputDebugStringW(wide(text)); }
bool debuggerWatches() noexcept { return IsDebuggerPresent() != FALSE; }

std::optional<ScreenPoint> cursorPosition() noexcept {
    POINT point{};
    if (!GetCursorPos(&point)) return std::nullopt;
    return ScreenPoint{static_cast<std::int32_t>(point.x), static_cast<std::int32_t>(point.y)};
}

void closeWindow(WindowHandle window) noexcept {
    const auto handle = reinterpret_cast<HWND>(window);
    if (handle != nullptr && IsWindow(handle))
        SendMessageTimeoutA(handle, WM_CLOSE, 0, 0, SMTO_NORMAL, kPatienceMs, nullptr);
}

bool runSoon(std::function<void()> work) {
    if (pinnedModule() == nullptr) return false;
    soonRuns().reserve(soonRuns().size() + 1);
    const UINT_PTR timer = SetTimer(nullptr, 0, USER_TIMER_MINIMUM, runNow);
    if (timer != 0) soonRuns().push_back({timer, std::move(work)});
    return timer != 0;
}

bool stayLoaded() noexcept { return pinnedModule() != nullptr; }

void announceIntegration() noexcept { SetEnvironmentVariableA("ZAB_BROWSER_INTEGRATION", "on"); }

}  // namespace zab
