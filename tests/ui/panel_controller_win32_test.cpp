// Real controller windows. Needs a display.
#include "ui/panel_controller.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

#include "browser/top_window.h"
#include "page/media_pages.h"
#include "settings/shared_list_lock.h"
#include "ui/panel_messages.h"
#include "ui/window_handle_win32.h"

namespace zab {
namespace {

using namespace panel_messages;

class Panel : public ::testing::Test {
  protected:
    Panel() {
        createSharedListMutex();
        controller = windowOf(pageController(browserWindow.handle()));
    }

    testbed::TopWindow browserWindow;
    HWND controller;
};

TEST_F(Panel, HasOneWindowForEachBrowserWindowAndOneForTheProcess) {
    ASSERT_NE(controller, nullptr);
    EXPECT_EQ(controller, FindWindowExA(windowOf(browserWindow.handle()), nullptr,
                                        "ZAB Download Panel controller class", "ZAB DwnlPanelCtrl Window"));
    EXPECT_EQ(GetWindowLongA(controller, GWL_STYLE) & (WS_CHILD | WS_VISIBLE), WS_CHILD);
    EXPECT_EQ(GetClassLongA(controller, GCL_STYLE), CS_VREDRAW | CS_HREDRAW);

    const HWND process = windowOf(processController());
    ASSERT_NE(process, nullptr);
    EXPECT_EQ(process, FindWindowExA(HWND_MESSAGE, nullptr, "ZAB_Download_Panel_controller2_class",
                                     std::to_string(GetCurrentProcessId()).c_str()));
    EXPECT_NE(GetWindowThreadProcessId(process, nullptr), GetCurrentThreadId());
    for (const HWND window : {controller, process}) EXPECT_EQ(SendMessageA(window, kAlive, 1, 2), 1);

    EXPECT_EQ(pageController(browserWindow.handle()), handleOf(controller)) << "one for each";
    std::optional<testbed::TopWindow> other(std::in_place);
    const WindowHandle window = other->handle(), others = pageController(window);
    EXPECT_NE(others, handleOf(controller));
    other.reset();
    EXPECT_FALSE(IsWindow(windowOf(others))) << "lives as long as its browser window";
    EXPECT_EQ(pageController(window), 0u) << "which is gone";
    EXPECT_EQ(pageController(0), 0u);
    EXPECT_EQ(pageController(handleOf(GetDesktopWindow())), 0u) << "a window of another process";
}

TEST_F(Panel, EndsByItsOwnerAlone) {
    const HWND process = windowOf(processController());
    PostThreadMessageA(GetWindowThreadProcessId(process, nullptr), WM_QUIT, 0, 0);
    Sleep(100);
    EXPECT_EQ(SendMessageA(process, kAlive, 0, 0), 1) << "anybody may tell a thread to quit";
    EXPECT_TRUE(endControllers());
    EXPECT_FALSE(IsWindow(process) || IsWindow(controller));
    EXPECT_NE(pageController(browserWindow.handle()), 0u);
    EXPECT_EQ(SendMessageA(windowOf(processController()), kAlive, 0, 0), 1) << "started anew when it is needed";
}

TEST_F(Panel, FilesAnEntryItselfWhenNobodyReceivesIt) {
    mediaPages().open({{nullptr, 7}, ""});
    for (const WindowHandle window : {handleOf(controller), WindowHandle{0x1234568}}) {
        auto entry = std::make_unique<MediaEntry>();
        entry->link = "http://h.example/" + std::to_string(window) + ".mp4";
        entry->extension = "mp4";
        entry->page.documentId = 7;
        EXPECT_TRUE(sendEntry(window, std::move(entry))) << window;
    }
    EXPECT_EQ(mediaPages().find(7)->media.entries().size(), 2u);
    mediaPages().forget({nullptr, 7});
}

}  // namespace
}  // namespace zab
