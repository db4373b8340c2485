// What real windows alone show: messages of strangers, and a thread that starts slowly.
#include "binding/wide_win32.h"
#include "companions/button_library/choice_record.h"
#include "scenarios/import_hook.h"
#include "scenarios/scenario.h"

namespace zab::testbed {
namespace {

constexpr const char* kOffered = "http://films.example/a.mp4";
constexpr ULONG_PTR kChoice = 0x466;
constexpr UINT kAlive = 0x465;

HWND windowOf(NativeWindow window) { return reinterpret_cast<HWND>(window); }

LRESULT copies(HWND window, std::string record, ULONG_PTR number = kChoice) {
    COPYDATASTRUCT copy{number, static_cast<DWORD>(record.size()), record.data()};
    return SendMessageA(window, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&copy));
}

class RealWindows : public ScreenScenario {
  protected:
    ~RealWindows() override { browser.unloads(u"17"); }

    static HWND processController() {
        return FindWindowExA(HWND_MESSAGE, nullptr, "ZAB_Download_Panel_controller2_class",
                             std::to_string(GetCurrentProcessId()).c_str());
    }
    HWND pageController() const {
        return FindWindowExA(windowOf(window->handle()), nullptr, "ZAB Download Panel controller class",
                             nullptr);
    }
};

TEST_F(RealWindows, EndByNoMessageOfStrangersAndSendWhatIsOfferedOnly) {
    auto& page = opensPage(17);
    browser.selectsTab(u"17");
    browser.offers(page);
    const HWND controllers[] = {processController(), pageController()};
    const HWND found[] = {controllers[0], controllers[1], windowOf(button())};
    beside([&] {
        for (const HWND any : found)
            for (const UINT message :
                 {WM_CLOSE, WM_DESTROY, WM_NCDESTROY, 0x465, 0x466, 0x467, 0x468, 0x469, 0x40E})
                for (const LPARAM lParam : {0, 8, -8}) {
                    SendMessageA(any, message, 7, lParam);
                    PostMessageA(any, message, 7, lParam);
                }
        for (const HWND controller : controllers)
            for (const auto* link : {u"http://elsewhere.example/x.mp4", u"!ALL!"}) {
                copies(controller, choiceRecord(link, 17, u"http://x/"));
                copies(controller, choiceRecord(link, 19, u"") + "noise");
                copies(controller, choiceRecord(link, 17, u""), kChoice + 1);
            }
    });
    for (const HWND controller : controllers) EXPECT_EQ(SendMessageA(controller, kAlive, 0, 0), 1);
    EXPECT_EQ(processController(), controllers[0]);
    EXPECT_EQ(pageController(), controllers[1]);
    serves([] { return false; }, std::chrono::milliseconds(500));
    ASSERT_EQ(manager.count(), 2u) << "all, by two ways";
    for (const std::size_t i : {0, 1}) {
        EXPECT_EQ(manager.received(i)["url"], kOffered);
        EXPECT_EQ(manager.received(i)["extraData"][7], page.url) << "whatever page a stranger names";
    }
    EXPECT_TRUE(meanwhile([] { return answerMessageBox(kOk); })) << "what was not there is told";
    EXPECT_FALSE(messageBoxIsOpen()) << "once";
}

std::function<void()> g_ticks;

TEST_F(RealWindows, ServeATimerWhileTwoThousandLinksGoOut) {
    constexpr UINT kEveryMs = 50;
    const auto linkOf = [](std::size_t number) { return "http://h.example/" + std::to_string(number); };
    std::string links;
    for (std::size_t i = 0; i < 2000; ++i) links += linkOf(i) + '\n';
    auto& page = opensPage(17);
    browser.offers(page);
    drags(page, utf16FromUtf8(links));
    std::size_t sent = 0, most = 0;
    g_ticks = [&] {
        const auto before = std::exchange(sent, manager.count());
        most = std::max(most, sent - before);
        if (before != 0) window.reset();
    };
    const auto timer = SetTimer(nullptr, 0, kEveryMs, [](HWND, UINT, UINT_PTR, DWORD) { g_ticks(); });
    EXPECT_EQ(meanwhile([&] { return copies(processController(), choiceRecord(u"!ALL!", 17, u"")); }), 1);
    EXPECT_TRUE(serves([&] { return sent == 2000; }, std::chrono::seconds(60))) << sent;
    KillTimer(nullptr, timer);
    EXPECT_LT(most, 500u) << "transfers between two ticks";
    for (std::size_t i = 0; i < sent; i += 100) EXPECT_EQ(manager.received(i)["url"], linkOf(i));
    window.emplace();
}

HANDLE g_waiting = nullptr;

HANDLE WINAPI startsLater(SECURITY_ATTRIBUTES* security, SIZE_T stack, LPTHREAD_START_ROUTINE run,
                          void* context, DWORD flags, DWORD* id) {
    const HANDLE thread = CreateThread(security, stack, run, context, flags | CREATE_SUSPENDED, id);
    DuplicateHandle(GetCurrentProcess(), thread, GetCurrentProcess(), &g_waiting, 0, FALSE,
                    DUPLICATE_SAME_ACCESS);
    return thread;
}

TEST_F(RealWindows, AreTheLibrarysAsSoonAsAThreadThatStartsSlowlyHasOne) {
    static const HookedImport kRows[] = {
        {"CreateThread", kCannotFail, reinterpret_cast<const void*>(&startsLater)}};
    const ImportHook hook(browser, kRows);
    auto& page = opensPage(17);
    browser.selectsTab(u"17");
    browser.offers(page);
    browser.offers(page);
    EXPECT_TRUE(window->buttons(true).empty());
    EXPECT_EQ(browser.faults().countOf("CreateThread"), 1u);
    ResumeThread(g_waiting);
    auto& next = opensPage(18);
    browser.selectsTab(u"18");
    browser.offers(next);
    EXPECT_EQ(window->buttons().size(), 1u);
    EXPECT_EQ(browser.faults().countOf("CreateThread"), 1u);
    browser.unloads(u"18");
}

}  // namespace
}  // namespace zab::testbed
