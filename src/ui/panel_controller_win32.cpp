#include "ui/panel_controller.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "binding/guard.h"
#include "binding/handle_win32.h"
#include "binding/never_destroyed.h"
#include "binding/this_module_win32.h"
#include "binding/throwing_win32.h"
#include "media/capture/media_capture.h"
#include "transfer/com_win32.h"
#include "ui/controller_host.h"
#include "ui/panel_messages.h"
#include "ui/window_handle_win32.h"

namespace zab {
namespace {

using namespace panel_messages;
static_assert(kClose == WM_CLOSE && kDestroyed == WM_NCDESTROY);

/// Of the browser's main thread, with the start and the end of the other one.
constexpr DWORD kPatienceMs = 1000;

struct WindowClass {
    const char* name;
    bool registered;
};
// Each is touched by the browser's main thread alone.
WindowClass g_processClass{"ZAB_Download_Panel_controller2_class", false};
WindowClass g_pageClass{"ZAB Download Panel controller class", false};

struct PageController {
    HWND browserWindow;
    HWND window;
};

/// The rest by the browser's main thread alone.
struct Started {
    std::vector<PageController> pages;
    Handle thread;  // of the process controller
    Handle ready;   // it has made its window, or could not
};

Started& started() {
    static NeverDestroyed<Started> all;
    return all.get();
}

std::atomic<bool> g_ending{false};

LRESULT requestByCopy(HWND window, LPARAM lParam) {
    const auto* copy = reinterpret_cast<const COPYDATASTRUCT*>(lParam);
    if (copy == nullptr || copy->dwData != kRequestByCopy || copy->lpData == nullptr) return 0;
    return controllers().requested(handleOf(window),
                                   {static_cast<const std::uint8_t*>(copy->lpData), copy->cbData});
}

/// A message that the process's windows take from strangers as if they ended would cost them their names.
bool passesOn(HWND window, UINT message) noexcept {
    return message != WM_NCDESTROY || g_ending || isPageController(handleOf(window));
}

LRESULT CALLBACK controllerProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    return guarded(LRESULT{0}, [&]() -> LRESULT {
        if (message == WM_COPYDATA) return requestByCopy(window, lParam);
        const auto answer =
            controllers().answer(handleOf(window), message, static_cast<std::uintptr_t>(lParam));
        if (answer) return *answer;
        return passesOn(window, message) ? DefWindowProcA(window, message, wParam, lParam) : 0;
    });
}

bool registerOnce(WindowClass& windowClass) noexcept {
    if (windowClass.registered) return true;
    WNDCLASSA description{};
    description.style = CS_VREDRAW | CS_HREDRAW;
    description.lpfnWndProc = controllerProcedure;
    description.hInstance = pinnedModule();
    description.hIcon = LoadIconA(nullptr, MAKEINTRESOURCEA(32512));
    description.hCursor = LoadCursorA(nullptr, MAKEINTRESOURCEA(32512));
    description.hbrBackground = static_cast<HBRUSH>(GetStockObject(GRAY_BRUSH));
    description.lpszClassName = windowClass.name;
    if (description.hInstance == nullptr) return false;
    windowClass.registered = RegisterClassA(&description) != 0 || GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
    return windowClass.registered;
}

HWND makeHiddenWindow(const WindowClass& windowClass, const char* name) noexcept {
    return CreateWindowExA(0, windowClass.name, name, 0, 0, 0, 1, 1, HWND_MESSAGE, nullptr, pinnedModule(),
                           nullptr);
}

void runProcessController(Handle ready) {
    const HWND window = makeHiddenWindow(g_processClass, std::to_string(GetCurrentProcessId()).c_str());
    controllerWindows().process = handleOf(window);
    SetEvent(ready.get());
    ready.reset();
    if (window == nullptr) return;
    const ComApartment com;
    MSG message;
    while (!g_ending) {
        const BOOL got = GetMessageA(&message, nullptr, 0, 0);
        if (got < 0) break;
        if (got == 0) continue;  // anybody may tell a thread to quit
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    controllerWindows().process = 0;
    DestroyWindow(window);
}

DWORD WINAPI processControllerThread(void* ready) noexcept {
    Handle readyEvent(ready);
    if (!prepareThreadToThrow()) return 0;
    guarded([&] { runProcessController(std::move(readyEvent)); });
    return 0;
}

/// A second handle of the same event: each side closes its own.
Handle anotherHandle(const Handle& handle) noexcept {
    Handle other;
    DuplicateHandle(GetCurrentProcess(), handle.get(), GetCurrentProcess(), other.put(), 0, FALSE,
                    DUPLICATE_SAME_ACCESS);
    return other;
}

bool isRunning(const Handle& thread) noexcept {
    return thread && WaitForSingleObject(thread.get(), 0) == WAIT_TIMEOUT;
}

void startProcessController() {
    if (!registerOnce(g_processClass) || !registerOnce(g_pageClass)) return;
    Handle ready(CreateEventA(nullptr, TRUE, FALSE, nullptr));
    Handle threads = anotherHandle(ready);
    if (!threads) return;
    g_ending = false;
    Handle thread(CreateThread(nullptr, 0, processControllerThread, threads.get(), 0, nullptr));
    if (!thread) return;
    (void)threads.release();
    started().thread = std::move(thread);
    started().ready = std::move(ready);
    if (controllerWindows().own == 0) controllerWindows().own = handleOf(makeHiddenWindow(g_pageClass, ""));
}

bool isWindowOfThisProcess(HWND window) noexcept {
    DWORD process = 0;
    return window != nullptr && GetWindowThreadProcessId(window, &process) != 0 &&
           process == GetCurrentProcessId();
}

HWND makePageController(HWND browserWindow) {
    if (!registerOnce(g_pageClass)) return nullptr;
    auto& pages = started().pages;
    pages.reserve(pages.size() + 1);
    const HWND window = CreateWindowExA(0, g_pageClass.name, "ZAB DwnlPanelCtrl Window", WS_CHILD, 0, 0, 0, 0,
                                        browserWindow, nullptr, pinnedModule(), nullptr);
    if (window != nullptr) pages.push_back({browserWindow, window});
    return window;
}

}  // namespace

bool isPageController(WindowHandle window) noexcept {
    char name[64]{};
    return isWindowOfThisProcess(windowOf(window)) && GetClassNameA(windowOf(window), name, sizeof name) != 0 &&
           std::strcmp(name, g_pageClass.name) == 0 && window != controllerWindows().own;
}

bool postToWindow(WindowHandle window, std::uint32_t message, std::uintptr_t lParam) noexcept {
    return PostMessageA(windowOf(window), message, 0, static_cast<LPARAM>(lParam)) != FALSE;
}

// Windows counts what was asked for as seen, and would not wake a waiting thread for it again; but it is woken
// by whatever the caller then posts or sets a timer for.
bool othersWait() noexcept { return HIWORD(GetQueueStatus(QS_INPUT | QS_PAINT | QS_TIMER)) != 0; }

WindowHandle processController() noexcept {
    return guarded(WindowHandle{0}, [] {
        const auto& process = controllerWindows().process;
        if (process == 0 && !isRunning(started().thread)) startProcessController();
        if (process == 0 && started().ready) WaitForSingleObject(started().ready.get(), kPatienceMs);
        return process.load();
    });
}

WindowHandle pageController(WindowHandle browserWindow) noexcept {
    return guarded(WindowHandle{0}, [&] {
        // By what is there: a message that a window ends may be anybody's.
        std::erase_if(started().pages, [](const PageController& known) {
            return !isPageController(handleOf(known.window)) || GetParent(known.window) != known.browserWindow;
        });
        for (const PageController& known : started().pages)
            if (known.browserWindow == windowOf(browserWindow)) return handleOf(known.window);
        if (!isWindowOfThisProcess(windowOf(browserWindow))) return WindowHandle{0};
        processController();
        return handleOf(makePageController(windowOf(browserWindow)));
    });
}

bool endControllers() noexcept {
    return guarded(false, [] {
        g_ending = true;
        controllers().end();
        for (const PageController& page : std::exchange(started().pages, {})) DestroyWindow(page.window);
        if (const WindowHandle own = controllerWindows().own.exchange(0)) DestroyWindow(windowOf(own));
        if (!started().thread) return true;
        if (const WindowHandle process = controllerWindows().process) postToWindow(process, WM_NULL, 0);
        if (WaitForSingleObject(started().thread.get(), kPatienceMs) != WAIT_OBJECT_0) return false;
        started().thread.reset();
        started().ready.reset();
        return true;
    });
}

bool sendEntry(WindowHandle controller, std::unique_ptr<MediaEntry> entry) noexcept {
    return guarded(false, [&] {
        const std::uintptr_t number = controllers().add(controller, std::move(entry));
        if (number == 0) return false;
        const LRESULT shown = SendMessageA(windowOf(controller), kFileEntry, 0, static_cast<LPARAM>(number));
        if (auto unread = controllers().takeBack(controller, number)) return fileEntry(std::move(unread));
        return shown == 1;
    });
}

}  // namespace zab
