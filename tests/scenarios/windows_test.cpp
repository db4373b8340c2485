// The browser's windows come and go, and its events arrive: listeners, popups, drags and tabs.
#include "scenarios/scenario.h"

namespace zab::testbed {
namespace {

using Types = std::vector<std::u16string>;

const Types kAll = {u"mouseup", u"mousedown", u"TabSelect"};

Types listenersOf(const ChromeWindow& window) {
    Types types;
    for (const auto& [type, listener] : window.target.listeners) types.push_back(type);
    return types;
}

class Windows : public Scenario {
  protected:
    Windows() {
        browser.startsUp();
        browser.takesDebugLines();
    }
};

TEST_F(Windows, HaveTheirListenersFromOpeningToClosingInEveryOrder) {
    const struct {
        const char* steps;  // a capital letter opens a window, the small one closes it
        const char* why;
    } rows[] = {
        {"ABba", "the younger closes first"},
        {"ABaAb", "a window that is told of twice"},
        {"ABbba", "a close that is told of twice"},
        {"aAB", "a close before any opening"},
    };
    for (const auto& row : rows) {
        ChromeWindow* windows[] = {&browser.make<ChromeWindow>(), &browser.make<ChromeWindow>()};
        bool open[] = {false, false};
        for (const char step : std::string_view(row.steps)) {
            const bool opens = step < 'a';
            const int which = opens ? step - 'A' : step - 'a';
            browser.notifies(opens ? "domwindowopened" : "domwindowclosed", windows[which]);
            open[which] = opens;
            for (const int i : {0, 1})
                EXPECT_EQ(listenersOf(*windows[i]), open[i] ? kAll : Types{}) << row.why << ", at " << step;
        }
        for (auto* window : windows) browser.closesWindow(*window);
    }
}

TEST_F(Windows, AFailingCallEndsTheHandlingOfItsNotification) {
    const struct {
        const char* operation;
        std::uint32_t nth;
        Types opened, closed;  // the listeners after opening, and after closing, when the call fails there
        const char* why;
    } rows[] = {
        {"service @zab/mozilla_cc_helper5;1", 1, {}, kAll, "no helper"},
        {"helper5.69", 1, {}, kAll, "no event target"},
        {"helper5.19", 1, {}, {}, "nothing is added after the first failure"},
        {"helper5.19", 3, {u"mouseup", u"mousedown"}, {}, "what was added stays"},
        {"NS_StringSetData", 1, {}, kAll, "no name of an event"},
        {"helper5.67", 1, kAll, kAll, "nothing is removed after the first failure"},
        {"helper5.67", 2, kAll, {u"mousedown", u"TabSelect"}, "what was removed stays so"},
    };
    for (const auto& row : rows) {
        browser.faults().failNth(row.nth, row.operation);
        auto& window = browser.opensWindow();
        EXPECT_EQ(listenersOf(window), row.opened) << row.why;
        browser.faults().none();
        browser.closesWindow(window);

        auto& other = browser.opensWindow();
        browser.faults().failNth(row.nth, row.operation);
        browser.closesWindow(other);
        EXPECT_EQ(listenersOf(other), row.closed) << row.why;
        browser.faults().none();
    }
}

TEST(WindowsAtFirst, AWindowThatCouldNotBeListenedToLeavesNoListenerBehind) {
    SettingsTree settings;
    SoundBrowser browser;
    browser.startsUp();
    browser.faults().failNth(1, "helper5.69");
    auto& window = browser.opensWindow();
    EXPECT_TRUE(browser.faults().reached());
    browser.faults().failNth(1, "helper5.67");
    browser.closesWindow(window);
    EXPECT_FALSE(browser.faults().reached()) << "nothing to remove, and nothing is tried";
}

TEST_F(Windows, AskForTheSelectedLinksAfterADragOnly) {
    const struct {
        const char* why;
        std::u16string press, release;
        int moves;
        const char* failing;
        std::uint32_t asked;
    } rows[] = {
        {"a plain click", u"mousedown", u"mouseup", 0, "none", 0},
        {"a drag, in any letter case", u"MouseDown", u"MOUSEUP", 5, "none", 1},
        {"a type that only begins so", u"mousedown", u"mouseups", 5, "none", 0},
        {"a type that cannot be read", u"mousedown", u"mouseup", 5, "helper5.17", 0},
        {"no helper", u"mousedown", u"mouseup", 5, "service @zab/mozilla_cc_helper5;1", 0},
        {"links that cannot be read", u"mousedown", u"mouseup", 5, "helper5.75", 1},
    };
    auto& page = browser.opensPage("http://site.example/");
    for (const auto& row : rows) {
        putCursor(100, 100);
        browser.mouse(row.press, &page);
        putCursor(100 + row.moves, 100);
        browser.faults().failAll(row.failing);
        browser.mouse(row.release, &page, u"http://site.example/a.zip\nhttp://site.example/b.zip");
        EXPECT_EQ(browser.faults().countOf("helper5.75"), row.asked) << row.why;
        browser.faults().none();
    }
}

TEST_F(Windows, NameTheSelectedDocumentOnTheDebuggerOutput) {
    browser.selectsTab(u"17abc");
    browser.reportsSelectedTab(u"000");
    EXPECT_EQ(browser.takesDebugLines(), (std::vector<std::string>{"**********Tabselect2 docID=17abc",
                                                                   "**********OnGetSelectedTabID docID=0"}));
}

}  // namespace
}  // namespace zab::testbed
