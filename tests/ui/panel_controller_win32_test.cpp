// Real controller windows, and the lists used from both of their threads. Needs a display and zab_manager.exe
// beside the test program.
#include "ui/panel_controller.h"

#include <gtest/gtest.h>

#include "binding/wide_win32.h"
// Behind windows.h, which it needs.
#include <psapi.h>

#include <atomic>
#include <thread>

#include "settings/shared_list_lock.h"
#include "transfer/manager_process_win32.h"
#include "ui/media_choice.h"
#include "ui/media_request_check.h"
#include "ui/panel_messages.h"

namespace zab {
namespace {

using namespace panel_messages;
using zabtest::requestItem;

HWND windowOf(WindowHandle handle) { return reinterpret_cast<HWND>(handle); }

std::string textOf(HWND window, int(WINAPI* read)(HWND, char*, int)) {
    char text[200]{};
    read(window, text, sizeof text);
    return text;
}

/// How many of the messages said that a request is resolved.
int dispatchAll() {
    int resolved = 0;
    for (MSG message; PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE);) {
        resolved += message.message == kResolved;
        DispatchMessageA(&message);
    }
    return resolved;
}

/// What the browser's main thread does all day, for so long or until `done`.
template <class Done>
bool pumpUntil(Done done, ULONGLONG ms = 20000) {
    for (const ULONGLONG end = GetTickCount64() + ms; GetTickCount64() < end;) {
        dispatchAll();
        if (done()) return true;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
    }
    return false;
}
void pump(ULONGLONG ms) {
    pumpUntil([] { return false; }, ms);
}

LRESULT copies(HWND window, const std::string& payload) {
    COPYDATASTRUCT copy{kRequestByCopy, static_cast<DWORD>(payload.size()), const_cast<char*>(payload.data())};
    return SendMessageA(window, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&copy));
}

std::size_t privateBytes() {
    PROCESS_MEMORY_COUNTERS counters{};
    counters.cb = sizeof counters;
    K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.PagefileUsage;
}

/// A browser window with one page, 7, that may have media.
class Panel : public ::testing::Test {
  protected:
    Panel() {
        createSharedListMutex();
        browserWindow = makeWindow();
        controller = windowOf(pageController(handleOf(browserWindow)));
    }
    ~Panel() override {
        DestroyWindow(browserWindow);
        forget(7);
    }

    static HWND makeWindow() {
        return CreateWindowExA(0, "Static", "browser", WS_OVERLAPPEDWINDOW, 0, 0, 300, 200, nullptr, nullptr,
                               nullptr, nullptr);
    }
    static WindowHandle handleOf(HWND window) { return reinterpret_cast<WindowHandle>(window); }
    static void forget(DocumentId document) {
        const SharedListLock lock(OnTimeout::skip);
        mediaPages().forget({nullptr, document});
        requestLists().forget({nullptr, document});
        selectedLinks() = {};
    }
    void open(DocumentId document, std::initializer_list<const char*> links) {
        const SharedListLock lock(OnTimeout::skip);
        auto& page = mediaPages().open(
            {{nullptr, document}, "http://page.example/", handleOf(browserWindow), handleOf(controller)});
        for (const char* link : links) {
            MediaEntry entry;
            entry.link = link;
            entry.page.url = "http://page.example/";
            entry.extension = "mp4";
            page.media.offer(std::move(entry));
        }
    }
    HWND browserWindow, controller;
};

TEST_F(Panel, HasOneWindowForEachBrowserWindowAndOneForTheProcess) {
    ASSERT_NE(controller, nullptr);
    EXPECT_EQ(textOf(controller, GetClassNameA), "ZAB Download Panel controller class");
    EXPECT_EQ(textOf(controller, GetWindowTextA), "ZAB DwnlPanelCtrl Window");
    EXPECT_EQ(GetParent(controller), browserWindow);
    EXPECT_EQ(GetWindowLongA(controller, GWL_STYLE) & (WS_CHILD | WS_VISIBLE), WS_CHILD);
    EXPECT_EQ(GetClassLongA(controller, GCL_STYLE), CS_VREDRAW | CS_HREDRAW);

    const HWND process = windowOf(processController());
    ASSERT_NE(process, nullptr);
    EXPECT_EQ(process, FindWindowExA(HWND_MESSAGE, nullptr, "ZAB_Download_Panel_controller2_class",
                                     std::to_string(GetCurrentProcessId()).c_str()));
    EXPECT_NE(GetWindowThreadProcessId(process, nullptr), GetCurrentThreadId());
    for (const HWND window : {controller, process}) EXPECT_EQ(SendMessageA(window, kAlive, 1, 2), 1);

    EXPECT_EQ(pageController(handleOf(browserWindow)), handleOf(controller)) << "one for each";
    const HWND other = makeWindow();
    const WindowHandle others = pageController(handleOf(other));
    EXPECT_NE(others, handleOf(controller));
    DestroyWindow(other);
    EXPECT_FALSE(IsWindow(windowOf(others))) << "lives as long as its browser window";
    EXPECT_EQ(pageController(handleOf(other)), 0u) << "which is gone";
    EXPECT_EQ(pageController(0), 0u);
    EXPECT_EQ(pageController(handleOf(GetDesktopWindow())), 0u) << "a window of another process";
}

TEST_F(Panel, EndsByItsOwnerAlone) {
    const HWND process = windowOf(processController());
    PostThreadMessageA(GetWindowThreadProcessId(process, nullptr), WM_QUIT, 0, 0);
    pump(100);
    EXPECT_EQ(SendMessageA(process, kAlive, 0, 0), 1) << "anybody may tell a thread to quit";
    EXPECT_TRUE(endControllers());
    EXPECT_FALSE(IsWindow(process) || IsWindow(controller));
    controller = windowOf(pageController(handleOf(browserWindow)));
    EXPECT_EQ(SendMessageA(windowOf(processController()), kAlive, 0, 0), 1) << "started anew when it is needed";
}

/// The main thread opens and forgets pages, while the controller's thread looks up what a third one asks for.
/// What was found is sent, though its page is gone again.
TEST_F(Panel, ListsSurviveBothThreads) {
    testing::ManagerProcess manager;
    ASSERT_TRUE(manager.isRegistered(true));
    const HWND process = windowOf(processController());
    const std::size_t before = privateBytes();
    std::atomic<bool> ends{false};
    std::atomic<int> asked{0};
    std::thread other([&] {
        const std::u16string urls[] = {u"http://h.example/a.mp4", u"!ALL!", u"http://h.example/o.mp4",
                                       u"unknown"};
        while (!ends) {
            const int i = asked++;
            copies(process, requestItem(30, urls[i % 4]) + requestItem(32, i % 3 == 0 ? u"7" : u"8"));
            Sleep(20);
        }
    });
    int rounds = 0, found = 0;
    for (const ULONGLONG end = GetTickCount64() + 5'000; GetTickCount64() < end; ++rounds) {
        for (const DocumentId document : {7, 8}) {
            open(document, {"http://h.example/a.mp4", "http://h.example/b.mp4"});
            const SharedListLock lock(OnTimeout::skip);
            OBJECTREQUESTSARRAY_ITEM object;
            object.url = "http://h.example/o.mp4";
            object.documentId = document;
            requestLists().examined.add(std::move(object));
        }
        auto entry = std::make_unique<MediaEntry>();
        entry->link = "http://h.example/c.mp4";
        entry->extension = "mp4";
        entry->page.documentId = 7;
        ASSERT_TRUE(sendEntry(rounds % 2 == 0 ? handleOf(controller) : 0x1234568, std::move(entry)))
            << "with no window it is filed here";
        Sleep(1);
        for (const DocumentId document : {7, 8}) forget(document);
        found += dispatchAll();
    }
    ends = true;
    other.join();
    EXPECT_GT(found, 10) << "of " << asked << " in " << rounds << " rounds";
    pump(500);
    EXPECT_LT(privateBytes(), before + (8u << 20));
    // No record was lost on its way: there still is room for this one.
    const std::size_t sent = manager.count();
    open(7, {"http://h.example/last.mp4"});
    EXPECT_EQ(copies(process, requestItem(30, u"http://h.example/last.mp4") + requestItem(32, u"7")), 1);
    EXPECT_TRUE(pumpUntil([&] { return manager.count() > sent; }));
    EXPECT_EQ(manager.received(sent).value("url", ""), "http://h.example/last.mp4");
}

}  // namespace
}  // namespace zab
