// What the desk alone shows: days in a browser in any order, and windows as the module finds them.
#include <random>
#include <thread>

#include "browser/base_window.h"
#include "scenarios/any_order.h"
#include "scenarios/scenario.h"

namespace zab::testbed {
namespace {

TEST(AnyOrder, LeavesNothingBehind) {
    for (std::uint32_t seed = 1; seed <= 20; ++seed) {
        std::mt19937 random(seed);
        std::vector<std::uint8_t> day(4000);
        for (auto& byte : day) byte = static_cast<std::uint8_t>(random());
        EXPECT_EQ(faultsOfAnyOrder(day), "") << "seed " << seed;
    }
}

TEST(PageWindow, IsThatOfTheDocShellWhereTheExtensionNamesNone) {
    for (const int version : {3, 12, 17, 30, 52}) {
        Screen screen({.version = version});
        auto& page = screen.opensPage(17);
        page.domWindow.docShell.nativeWindow = std::exchange(page.nativeWindow, 0);
        screen.browser.selectsTab(u"17");
        screen.browser.offers(page);
        EXPECT_NE(screen.button(), 0u) << version;
        screen.browser.unloads(u"17");
    }
}

TEST(Threads, ABrowsersObjectIsNotCalledOnAnother) {
    Browser browser;
    auto& page = browser.opensPage("http://h.example/");
    std::thread([&] { browser.callModule(StandInCall::addRef, page.asSupports()); }).join();
    EXPECT_EQ(browser.violations(),
              std::vector<std::string>{"nsISupports.1 is called on a thread of the module"});
}

}  // namespace
}  // namespace zab::testbed
