#include "ui/panel_controller.h"

#include <algorithm>
#include <atomic>
#include <string>
#include <utility>
#include <vector>

#include "binding/guard.h"
#include "binding/handle_win32.h"
#include "binding/never_destroyed.h"
#include "binding/this_module_win32.h"
#include "binding/throwing_win32.h"
#include "media/capture/media_capture.h"
#include "settings/shared_list_lock.h"
#include "transfer/com_win32.h"
#include "ui/in_flight.h"
#include "ui/media_choice.h"
#include "ui/panel_messages.h"

namespace zab {
namespace {

using namespace panel_messages;

constexpr DWORD kPatienceMs =
    1000;  // of the browser's main thread, with the start and the end of the other one

struct WindowClass {
    const char* name;
    bool registered;
};
// Each is touched by the browser's main thread alone.
WindowClass g_processClass{"ZAB_Download_Panel_controller2_class", false};
WindowClass g_pageClass{"ZAB Download Panel controller class", false};

std::atomic<HWND> g_processController{nullptr};
Handle g_processThread;  // by the browser's main thread alone

struct PageController {
    HWND browserWindow;
    HWND window;
};

/// By the browser's main thread alone.
std::vector<PageController>& pageControllers() {
    static NeverDestroyed<std::vector<PageController>> controllers;
    return controllers.get();
}

template <class Record>
InFlight<Record>& inFlight() {
    static NeverDestroyed<InFlight<Record>> flights;
    return flights.get();
}

WindowHandle handleOf(HWND window) noexcept { return reinterpret_cast<WindowHandle>(window); }
HWND windowOf(WindowHandle handle) noexcept { return reinterpret_cast<HWND>(handle); }

ChoiceLists choiceLists() { return {requestLists(), mediaPages(), selectedLinks()}; }

/// The choice is freed when it cannot be posted.
void post(HWND window, UINT message, std::unique_ptr<Choice> choice) {
    const std::uintptr_t address = inFlight<Choice>().add(handleOf(window), message, std::move(choice));
    if (address != 0 && !PostMessageA(window, message, 0, static_cast<LPARAM>(address)))
        inFlight<Choice>().take(handleOf(window), message, address);
}

struct Message {
    HWND window;
    UINT number;
    WPARAM wParam;
    LPARAM lParam;

    template <class Record>
    [[nodiscard]] std::unique_ptr<Record> record() const {
        return inFlight<Record>().take(handleOf(window), number, static_cast<std::uintptr_t>(lParam));
    }
};

LRESULT passOn(const Message& message) {
    return DefWindowProcA(message.window, message.number, message.wParam, message.lParam);
}

LRESULT alive(const Message&) { return 1; }

LRESULT requestByCopy(const Message& message) {
    const auto* copy = reinterpret_cast<const COPYDATASTRUCT*>(message.lParam);
    if (copy == nullptr || copy->dwData != kRequestByCopy || copy->lpData == nullptr) return passOn(message);
    auto choice = std::make_unique<Choice>();
    choice->request = decodeMediaRequest({static_cast<const std::uint8_t*>(copy->lpData), copy->cbData});
    if (message.window == g_processController) choice->origin = ChoiceOrigin::processController;
    // Not now: whoever sent this waits for the answer, and no call into another process can be made meanwhile.
    post(message.window, kResolve, std::move(choice));
    return 1;
}

LRESULT resolve(const Message& message) {
    auto choice = message.record<Choice>();
    if (!choice) return 0;
    HWND reply = message.window;
    {
        const SharedListLock lock(OnTimeout::skip);
        if (!lock) return 0;
        const NamedMedia media = named(choice->request, choice->origin, choiceLists());
        if (!media.found()) return 0;
        if (media.controller != 0) reply = windowOf(media.controller);
    }
    choice->request.kind = requestedKind(choice->request);
    post(reply, kResolved, std::move(choice));
    return 0;
}

TransferResult transfer(TransferSession& session, const TransferRecord& record, bool requestSeen) {
    if (!requestSeen) return session.sendAsBrowser(record);
    TransferRecord narrow = record;
    makeNarrow(narrow);
    return session.send(narrow);
}

LRESULT resolved(const Message& message) {
    auto choice = message.record<Choice>();
    if (!choice) return 0;
    if (!choice->ready) {
        const SharedListLock lock(OnTimeout::skip);
        if (!lock) return 0;
        prepare(*choice, choiceLists());
    }
    TransferSession session;
    const auto progress = sendChoice(
        *choice, [&](const TransferRecord& record) { return transfer(session, record, choice->requestSeen); });
    if (progress == ChoiceProgress::later) post(message.window, kResolved, std::move(choice));
    if (progress == ChoiceProgress::givenUp) reportNoCallsNow();
    return 0;
}

LRESULT takeEntry(const Message& message) {
    auto entry = message.record<MediaEntry>();
    return entry && fileEntry(std::move(entry)) ? 1 : 0;
}

/// The last message of a window.
LRESULT ended(const Message& message) {
    inFlight<Choice>().forget(handleOf(message.window));
    inFlight<MediaEntry>().forget(handleOf(message.window));
    HWND process = message.window;
    if (g_processController.compare_exchange_strong(process, nullptr)) {
        PostQuitMessage(0);
    } else {
        std::erase_if(pageControllers(), [&](const PageController& c) { return c.window == message.window; });
    }
    return passOn(message);
}

constexpr struct {
    UINT number;
    LRESULT (*handle)(const Message& message);
} kHandlers[] = {
    {kAlive, alive},       {WM_COPYDATA, requestByCopy}, {kResolve, resolve},
    {kResolved, resolved}, {kFileEntry, takeEntry},      {WM_NCDESTROY, ended},
};

LRESULT CALLBACK controllerProcedure(HWND window, UINT number, WPARAM wParam, LPARAM lParam) noexcept {
    return guarded(LRESULT{0}, [&] {
        const Message message{window, number, wParam, lParam};
        for (const auto& row : kHandlers)
            if (row.number == number) return row.handle(message);
        return passOn(message);
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

void runProcessController(Handle started) {
    const std::string name = std::to_string(GetCurrentProcessId());
    const HWND window = CreateWindowExA(0, g_processClass.name, name.c_str(), 0, 0, 0, 1, 1, HWND_MESSAGE,
                                        nullptr, pinnedModule(), nullptr);
    g_processController = window;
    SetEvent(started.get());
    started.reset();
    if (window == nullptr) return;
    const ComApartment com;
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    if (g_processController == window) DestroyWindow(window);  // the thread was told to end, not its window
}

DWORD WINAPI processControllerThread(void* started) noexcept {
    Handle startedEvent(started);
    if (!prepareThreadToThrow()) return 0;
    guarded([&] { runProcessController(std::move(startedEvent)); });
    return 0;
}

/// A second handle of the same event: each side closes its own.
Handle anotherHandle(const Handle& handle) noexcept {
    Handle other;
    DuplicateHandle(GetCurrentProcess(), handle.get(), GetCurrentProcess(), other.put(), 0, FALSE,
                    DUPLICATE_SAME_ACCESS);
    return other;
}

void startProcessController() {
    if (!registerOnce(g_processClass)) return;
    const Handle started(CreateEventA(nullptr, TRUE, FALSE, nullptr));
    Handle threads = anotherHandle(started);
    if (!threads) return;
    g_processThread.reset(CreateThread(nullptr, 0, processControllerThread, threads.get(), 0, nullptr));
    if (!g_processThread) return;
    (void)threads.release();
    WaitForSingleObject(started.get(), kPatienceMs);
}

bool isWindowOfThisProcess(HWND window) noexcept {
    DWORD process = 0;
    return window != nullptr && GetWindowThreadProcessId(window, &process) != 0 &&
           process == GetCurrentProcessId();
}

HWND makePageController(HWND browserWindow) {
    if (!registerOnce(g_pageClass)) return nullptr;
    pageControllers().reserve(pageControllers().size() + 1);
    const HWND window = CreateWindowExA(0, g_pageClass.name, "ZAB DwnlPanelCtrl Window", WS_CHILD, 0, 0, 0, 0,
                                        browserWindow, nullptr, pinnedModule(), nullptr);
    if (window != nullptr) pageControllers().push_back({browserWindow, window});
    return window;
}

}  // namespace

WindowHandle processController() noexcept {
    return guarded(WindowHandle{0}, [] {
        if (g_processController == nullptr) startProcessController();
        return handleOf(g_processController);
    });
}

WindowHandle pageController(WindowHandle browserWindow) noexcept {
    return guarded(WindowHandle{0}, [&] {
        for (const PageController& known : pageControllers())
            if (known.browserWindow == windowOf(browserWindow)) return handleOf(known.window);
        if (!isWindowOfThisProcess(windowOf(browserWindow))) return WindowHandle{0};
        processController();
        return handleOf(makePageController(windowOf(browserWindow)));
    });
}

bool endControllers() noexcept {
    return guarded(false, [] {
        while (!pageControllers().empty())
            if (!DestroyWindow(pageControllers().back().window)) pageControllers().pop_back();
        if (!g_processThread) return true;
        PostMessageA(g_processController, WM_CLOSE, 0, 0);
        if (WaitForSingleObject(g_processThread.get(), kPatienceMs) != WAIT_OBJECT_0) return false;
        g_processThread.reset();
        return true;
    });
}

bool sendEntry(WindowHandle controller, std::unique_ptr<MediaEntry> entry) noexcept {
    return guarded(false, [&] {
        const std::uintptr_t address = inFlight<MediaEntry>().add(controller, kFileEntry, std::move(entry));
        if (address == 0) return false;
        const LRESULT shown = SendMessageA(windowOf(controller), kFileEntry, 0, static_cast<LPARAM>(address));
        inFlight<MediaEntry>().take(controller, kFileEntry, address);  // still there when nobody received it
        return shown == 1;
    });
}

}  // namespace zab
