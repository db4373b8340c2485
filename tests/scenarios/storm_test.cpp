// What real windows alone show: messages of another process, and a thread that starts slowly.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <random>
#include <sstream>

#include "binding/handle_win32.h"
#include "companions/button_library/choice_record.h"
#include "scenarios/import_hook.h"
#include "scenarios/scenario.h"

namespace zab::testbed {
namespace {

constexpr const char* kTargets = "ZAB_STORM_TARGETS";
constexpr const char* kOffered = "http://films.example/a.mp4";
constexpr ULONG_PTR kChoice = 0x466;
constexpr UINT kAlive = 0x465;

HWND windowOf(NativeWindow window) { return reinterpret_cast<HWND>(window); }

LRESULT copies(HWND window, std::string record, ULONG_PTR number = kChoice) {
    COPYDATASTRUCT copy{number, static_cast<DWORD>(record.size()), record.data()};
    return SendMessageA(window, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&copy));
}

/// Bytes without sense, or a choice: of what page 17 offers, now and then, or in a page that there is not.
std::string anyRecord(std::mt19937& random, bool offered) {
    std::string noise(random() % 64, '\0');
    for (char& c : noise) c = static_cast<char>(random());
    if (offered)
        return choiceRecord(random() % 2 != 0 ? u"http://films.example/a.mp4" : u"!ALL!", 17, u"http://x/");
    return random() % 2 != 0 ? noise
                             : choiceRecord(u"http://elsewhere.example/x.mp4", 19 + random() % 9, u"") + noise;
}

/// The other process: this program again.
TEST(OtherProcess, DISABLED_SendsAnything) {
    char text[200]{};
    GetEnvironmentVariableA(kTargets, text, sizeof text);
    std::vector<HWND> windows;
    std::istringstream numbers(text);
    for (std::uintptr_t number = 0; numbers >> number;) windows.push_back(windowOf(number));
    constexpr UINT kMessages[] = {WM_CLOSE, WM_DESTROY, WM_NCDESTROY, 0x465, 0x466, 0x467, 0x468, 0x469, 0x40E};
    std::mt19937 random(19);
    for (int i = 0; i < 100'000; ++i) {
        const HWND window = windows[random() % windows.size()];
        const UINT message = kMessages[random() % std::size(kMessages)];
        const auto lParam = static_cast<LPARAM>(random() % 2 != 0 ? random() : random() % 3 * 8 - 8);
        if (i % 20 == 0)
            copies(window, anyRecord(random, i % 4000 == 0), kChoice + (random() % 4 == 0));
        else if (i % 20 == 1)
            SendMessageA(window, message, random(), lParam);
        else
            PostMessageA(window, message, random(), lParam);
    }
}

Handle startsOtherProcess(const std::vector<NativeWindow>& targets) {
    std::string numbers;
    for (const auto target : targets) numbers += std::to_string(target) + ' ';
    SetEnvironmentVariableA(kTargets, numbers.c_str());
    char program[MAX_PATH]{};
    GetModuleFileNameA(nullptr, program, MAX_PATH);
    std::string command =
        '"' + std::string(program) +
        "\" --gtest_also_run_disabled_tests --gtest_filter=OtherProcess.DISABLED_SendsAnything";
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process);
    CloseHandle(process.hThread);
    return Handle(process.hProcess);
}

class RealWindows : public ::testing::Test {
  protected:
    RealWindows() {
        settings.setCompanions();
        browser.startsUp();
    }
    ~RealWindows() override {
        browser.unloads(u"17");
        EXPECT_EQ(browser.unbalanced(), "");
        EXPECT_EQ(browser.violations(), std::vector<std::string>{});
    }

    Page& opensPage(std::uint64_t id) {
        auto& page = browser.opensPage("http://site.example/", u"Page", id);
        page.nativeWindow = window->handle();
        return page;
    }
    void offers(Page& page) {
        auto& film = browser.requests({.url = kOffered, .loadFlags = kEmbedded, .page = &page});
        browser.answers(film, 200, {{"Content-Type", "video/mp4"}, {"Content-Length", "900000"}});
        browser.finishes(film);
    }
    static HWND processController() {
        return FindWindowExA(HWND_MESSAGE, nullptr, "ZAB_Download_Panel_controller2_class",
                             std::to_string(GetCurrentProcessId()).c_str());
    }
    HWND pageController() const {
        return FindWindowExA(windowOf(window->handle()), nullptr, "ZAB Download Panel controller class",
                             nullptr);
    }

    SettingsTree settings;
    std::unique_ptr<TopWindow> window = std::make_unique<TopWindow>();
    Manager manager;
    Browser browser;
};

/// While pages come and go.
TEST_F(RealWindows, TakeAHundredThousandMessagesOfAnotherProcess) {
    auto& page = opensPage(17);
    browser.selectsTab(u"17");
    offers(page);
    const HWND controllers[] = {processController(), pageController()};
    const Handle other =
        startsOtherProcess({reinterpret_cast<NativeWindow>(controllers[0]),
                            reinterpret_cast<NativeWindow>(controllers[1]), window->buttons(true).front()});
    serves(
        [&] {
            auto& passing = opensPage(18);
            offers(passing);
            browser.unloads(u"18");
            Browser::dropsPage(passing);
            browser.sweeps();
            return WaitForSingleObject(other.get(), 0) == WAIT_OBJECT_0;
        },
        std::chrono::seconds(100));
    DWORD status = 1;
    GetExitCodeProcess(other.get(), &status);
    EXPECT_EQ(status, 0u);
    for (const HWND controller : controllers) EXPECT_EQ(SendMessageA(controller, kAlive, 0, 0), 1);
    EXPECT_EQ(processController(), controllers[0]);
    EXPECT_EQ(pageController(), controllers[1]);
    EXPECT_EQ(meanwhile([&] { return copies(controllers[1], choiceRecord(u"!ALL!", 17, u"")); }), 1);
    serves([] { return false; }, std::chrono::milliseconds(500));
    const auto transfers = manager.count();
    EXPECT_GT(transfers, 2u);
    for (std::size_t i = 0; i < transfers; ++i) {
        const auto told = manager.received(i);
        EXPECT_EQ(told["url"], kOffered);
        EXPECT_EQ(told["extraData"][7], page.url) << "whatever page a stranger names";
    }
}

std::function<void()> g_ticks;

TEST_F(RealWindows, ServeATimerWhileTwoThousandLinksGoOut) {
    constexpr UINT kEveryMs = 50;
    const auto linkOf = [](std::size_t number) { return "http://h.example/" + std::to_string(number); };
    std::string links;
    for (std::size_t i = 0; i < 2000; ++i) links += linkOf(i) + '\n';
    auto& page = opensPage(17);
    offers(page);
    window->putsCursor(100, 100);
    browser.mouse(u"mousedown", &page);
    window->putsCursor(200, 200);
    browser.mouse(u"mouseup", &page, std::u16string(links.begin(), links.end()));
    std::size_t sent = 0, most = 0;
    g_ticks = [&] {
        const auto before = std::exchange(sent, manager.count());
        most = std::max(most, sent - before);
        if (before != 0) window = nullptr;
    };
    const auto timer = SetTimer(nullptr, 0, kEveryMs, [](HWND, UINT, UINT_PTR, DWORD) { g_ticks(); });
    EXPECT_EQ(meanwhile([&] { return copies(processController(), choiceRecord(u"!ALL!", 17, u"")); }), 1);
    EXPECT_TRUE(serves([&] { return sent == 2000; }, std::chrono::seconds(60))) << sent;
    KillTimer(nullptr, timer);
    EXPECT_LT(most, 500u) << "transfers between two ticks";
    for (std::size_t i = 0; i < sent; i += 100) EXPECT_EQ(manager.received(i)["url"], linkOf(i));
    window = std::make_unique<TopWindow>();
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
    offers(page);
    offers(page);
    EXPECT_TRUE(window->buttons(true).empty());
    EXPECT_EQ(browser.faults().countOf("CreateThread"), 1u);
    ResumeThread(g_waiting);
    auto& next = opensPage(18);
    browser.selectsTab(u"18");
    offers(next);
    EXPECT_EQ(window->buttons().size(), 1u);
    EXPECT_EQ(browser.faults().countOf("CreateThread"), 1u);
    browser.unloads(u"18");
}

}  // namespace
}  // namespace zab::testbed
