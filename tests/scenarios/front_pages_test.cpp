// Several browser windows with several tabs: whose button is seen, and what becomes of it when tabs and windows
// move and close.
#include <algorithm>
#include <map>
#include <random>

#include "scenarios/scenario.h"

namespace zab::testbed {
namespace {

class Tabs : public ScreenScenario {
  protected:
    static std::u16string textOf(std::uint64_t id) { return utf16FromUtf8(std::to_string(id)); }
    Page& opensTab(const TopWindow& in, std::uint64_t id) {
        auto& page = browser.opensPage("http://site.example/", u"Page", id);
        page.nativeWindow = in.handle();
        page.boxes[u"appcontent"] = in.contentBox();
        browser.selectsTab(textOf(id));
        browser.offers(page);
        return page;
    }
    static bool shows(const TopWindow& in, std::size_t visible, std::size_t all) {
        return serves([&] { return in.buttons().size() == visible && in.buttons(true).size() == all; });
    }

    void walks(std::uint32_t seed, int steps);
};

/// Two windows with three tabs each.
void Tabs::walks(std::uint32_t seed, int steps) {
    struct Tab {
        Page* page;
        std::size_t window;
    };
    std::optional<TopWindow> windows[2];
    for (auto& each : windows) each.emplace();
    std::map<std::uint64_t, Tab> tabs;
    std::uint64_t front[] = {0, 0}, next = 100;
    std::mt19937 random(seed);
    const auto comesForward = [&](std::uint64_t id, std::size_t where) {
        for (auto& shown : front)
            if (shown == id) shown = 0;
        front[where] = id;
        tabs[id].window = where;
        tabs[id].page->nativeWindow = windows[where]->handle();
    };
    const auto closes = [&](std::uint64_t id) {
        browser.fires(u"unload", *tabs[id].page);
        Browser::dropsPage(*tabs[id].page);
        for (auto& shown : front)
            if (shown == id) shown = 0;
        tabs.erase(id);
        browser.sweeps();
    };
    for (int step = 0; step < steps; ++step) {
        for (; tabs.size() < 6; ++next) {
            const std::size_t where = next % 2;
            tabs[next] = {&opensTab(*windows[where], next), where};
            comesForward(next, where);
        }
        const auto chosen = std::next(tabs.begin(), static_cast<std::ptrdiff_t>(random() % tabs.size()));
        const auto [id, tab] = *chosen;
        const std::size_t other = 1 - tab.window;
        const auto act = random() % 40;
        if (act < 8) {
            closes(id);
        } else if (act == 8) {  // its window closes, and its tabs with it or, for one, before
            comesForward(id, other);
            if (random() % 2 == 0) browser.selectsTab(textOf(id));
            while (true) {
                const auto left =
                    std::ranges::find(tabs, tab.window, [](const auto& row) { return row.second.window; });
                if (left == tabs.end()) break;
                closes(left->first);
            }
            windows[tab.window].emplace();
            browser.selectsTab(textOf(id));
        } else {
            comesForward(id, act < 20 ? other : tab.window);
            browser.selectsTab(textOf(id));
        }
        for (const std::size_t where : {0u, 1u}) {
            const auto here =
                std::ranges::count(tabs, where, [](const auto& row) { return row.second.window; });
            ASSERT_TRUE(shows(*windows[where], front[where] != 0 ? 1 : 0, static_cast<std::size_t>(here)))
                << "step " << step << ", act " << act;
        }
    }
    while (!tabs.empty()) closes(tabs.begin()->first);
    for (const auto& each : windows) EXPECT_TRUE(shows(*each, 0, 0));
}

TEST_F(Tabs, OfEachWindowShowTheButtonOfTheOneInFrontAndNoOther) { walks(19, 100); }
#ifndef _WIN32  // real windows show nothing more
TEST_F(Tabs, OfEachWindowShowItOnEveryOtherWayToo) { walks(91, 1000); }
#endif

TEST_F(Tabs, ThatMoveHaveAButtonAgainAsSoonAsOneCanBeMade) {
    TopWindow stays;
    auto& page = opensTab(*window, 17);
    EXPECT_TRUE(shows(*window, 1, 1));
    page.nativeWindow = stays.handle();
    window.reset();
    browser.faults().failAll("helper5.73");
    browser.selectsTab(u"17");
    EXPECT_TRUE(shows(stays, 0, 0)) << "nobody says where";
    browser.faults().none();
    browser.selectsTab(u"17");
    EXPECT_TRUE(shows(stays, 1, 1));

    closesButton(stays.buttons().front());
    EXPECT_TRUE(shows(stays, 0, 0));
    browser.selectsTab(u"17");
    browser.offers(page, "b.mp4");
    EXPECT_TRUE(shows(stays, 0, 0)) << "the user closed it";
    browser.unloads(u"17");
}

TEST_F(Tabs, BehindAnEmptyOneOrOneThatEndsShowNothing) {
    opensTab(*window, 17);
    opensTab(*window, 18);
    browser.selectsTab(u"0");
    EXPECT_TRUE(shows(*window, 0, 2));
    browser.selectsTab(u"18");
    EXPECT_TRUE(shows(*window, 1, 2));
    browser.unloads(u"18");
    EXPECT_TRUE(shows(*window, 0, 1));
    browser.unloads(u"17");
}

TEST_F(Tabs, OfAPageThatScrollsAskOnceWhereItIs) {
    auto& page = opensTab(*window, 17);
    const auto button = window->buttons().at(0);
    page.boxes[u"appcontent"] = {0, 90, 300, 250};
    browser.faults().none();
    for (int i = 0; i < 20; ++i) browser.fires(u"scroll", page);
    EXPECT_TRUE(serves([&] { return areaOf(button).top == 92; }));
    EXPECT_EQ(browser.faults().countOf("helper5.73"), 1u);
    browser.unloads(u"17");
}

}  // namespace
}  // namespace zab::testbed
