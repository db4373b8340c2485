// What the desk alone shows: days in a browser in any order, and windows as the module finds them.
#include <gtest/gtest.h>

#include <random>
#include <thread>

#include "browser/base_window.h"
#include "browser/browser.h"
#include "browser/desktop.h"
#include "desk/desk.h"
#include "scenarios/any_order.h"

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
        SettingsTree settings;
        settings.setCompanions();
        desk().windows.clear();
        Browser browser({.version = version});
        browser.startsUp();
        auto& page = browser.opensPage("http://h.example/", u"Page", 17);
        page.domWindow.docShell.nativeWindow = desk().opensWindow({.rect = {0, 0, 800, 600}});
        browser.selectsTab(u"17");
        auto& film = browser.requests({.url = "http://h.example/a.flv", .loadFlags = kEmbedded, .page = &page});
        browser.answers(film, 200, {{"Content-Type", "video/x-flv"}, {"Content-Length", "5000"}});
        std::size_t buttons = 0;
        for (const auto& [handle, window] : desk().windows) buttons += window.documentId == 17;
        EXPECT_EQ(buttons, 1u) << version;
        browser.unloads(u"17");
        EXPECT_EQ(browser.unbalanced(), "") << version;
        EXPECT_EQ(browser.violations(), std::vector<std::string>{}) << version;
    }
}

TEST(Cookies, AreReadUnderTheIdentifierOfEachVersion) {
    for (const int version : {18, 30, 46}) {
        SettingsTree settings;
        settings.set("Extensions", "zip");
        desk().told.clear();
        Browser browser({.version = version});
        browser.cookies = {{.name = "theme", .value = "dark", .host = "h.example"}};
        browser.startsUp();
        auto& page = browser.opensPage("http://h.example/");
        browser.answers(browser.clicks("http://h.example/a.zip", &page), 200,
                        {{"Content-Type", "application/zip"}});
        ASSERT_EQ(desk().told.size(), 1u) << version;
        EXPECT_EQ(desk().told[0].text(nameOf(ExtraElement::pageCookies)), "theme=dark") << version;
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
