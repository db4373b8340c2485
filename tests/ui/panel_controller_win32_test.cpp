// Real controller windows. Needs a display.
#include "ui/panel_controller.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "page/media_pages.h"
#include "settings/shared_list_lock.h"
#include "ui/panel_messages.h"
#include "ui/window_handle_win32.h"

namespace zab {
namespace {

using namespace panel_messages;

std::string textOf(HWND window, int(WINAPI* read)(HWND, char*, int)) {
    char text[200]{};
    read(window, text, sizeof text);
    return text;
}

class Panel : public ::testing::Test {
  protected:
    Panel() {
        createSharedListMutex();
        browserWindow = makeWindow();
        controller = windowOf(pageController(handleOf(browserWindow)));
    }
    ~Panel() override { DestroyWindow(browserWindow); }

    static HWND makeWindow() {
        return CreateWindowExA(0, "Static", "browser", WS_OVERLAPPEDWINDOW, 0, 0, 300, 200, nullptr, nullptr,
                               nullptr, nullptr);
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
    Sleep(100);
    EXPECT_EQ(SendMessageA(process, kAlive, 0, 0), 1) << "anybody may tell a thread to quit";
    EXPECT_TRUE(endControllers());
    EXPECT_FALSE(IsWindow(process) || IsWindow(controller));
    controller = windowOf(pageController(handleOf(browserWindow)));
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
