// The module starts up in a browser: what it registers, what it takes, and what it survives.
#include "scenarios/scenario.h"
#ifdef _WIN32
#include "binding/wide_win32.h"
#include "browser/library.h"
#endif

namespace zab::testbed {
namespace {

const std::vector<std::string> kTopics = {
    "http-on-modify-request",          "http-on-examine-response", "http-on-examine-merged-response",
    "http-on-examine-cached-response", "domwindowopened",          "domwindowclosed"};

TEST(StartUp, RegistersForTheTopicsInOrderAndOnce) {
    SettingsTree settings;
    SoundBrowser browser;
    EXPECT_EQ(browser.startsUp(), NS_OK);
    EXPECT_EQ(browser.observedTopics(), kTopics);
    EXPECT_EQ(browser.module().Observe(nullptr, "profile-after-change"), NS_OK);
    EXPECT_EQ(browser.observedTopics(), kTopics);
    ASSERT_NE(browser.host(), nullptr);
    EXPECT_EQ(browser.host()->name(), "extension");
}

TEST(StartUp, SaysWhyItCannotRegister) {
    const struct {
        const char* operation;
        std::uint32_t nth;
        nsresult fault, answer;
        std::size_t topics;
        const char* why;
    } rows[] = {
        {"NS_GetServiceManager", 1, NS_ERROR_FAILURE, 0xFFFFFFFF, 0, "no service manager"},
        {"service @mozilla.org/observer-service;1", 1, NS_ERROR_NOT_AVAILABLE, NS_ERROR_NOT_AVAILABLE, 0,
         "the service's error as it is"},
        {"observerService.3", 1, NS_ERROR_NOT_AVAILABLE, NS_ERROR_NOT_AVAILABLE, 0, "first registration"},
        {"observerService.3", 2, NS_ERROR_NOT_AVAILABLE, NS_ERROR_NOT_AVAILABLE, 0, "second registration"},
        {"observerService.3", 3, NS_ERROR_NOT_AVAILABLE, NS_OK, 5, "a later registration may fail"},
    };
    for (const auto& row : rows) {
        SettingsTree settings;
        SoundBrowser browser;
        browser.faults().failNth(row.nth, row.operation, row.fault);
        const auto answer =
            browser.intoModule([&] { return browser.module().Observe(nullptr, "profile-after-change"); });
        EXPECT_EQ(answer, row.answer) << row.why;
        EXPECT_TRUE(browser.faults().reached()) << row.why;
        EXPECT_EQ(browser.observedTopics().size(), row.topics) << row.why;
        if (!failed(row.answer)) continue;
        browser.faults().none();
        EXPECT_EQ(browser.module().Observe(nullptr, "profile-after-change"), NS_OK) << row.why;
        EXPECT_EQ(browser.observedTopics(), kTopics) << "the next try starts clean: " << row.why;
    }
}

#ifdef _WIN32  // what only the system unloads
HMODULE libraryOf(const ModuleExports& module) {
    HMODULE library = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<const char*>(module.InitCC), &library);
    return library;
}

using Loaded = ScreenScenario;

TEST_F(Loaded, WhatTheBrowserCallsIsNotUnloadedAtAnyStepOfItsLife) {
    const HMODULE library = libraryOf(browser.module());
    Page* page = nullptr;
    const std::function<void()> life[] = {
        [&] { browser.clicks("http://h.example/page"); },
        [&] { page = &opensPage(17); },
        [&] { browser.selectsTab(u"17"); },
        [&] { browser.offers(*page); },
        [&] { EXPECT_NE(button(), 0u); },
        [&] { browser.unloads(u"17"); },
        [&] { browser.shutsDown(); },
    };
    for (const auto& step : life) {
        for (int i = 0; i < 2; ++i) FreeLibrary(library);
        ASSERT_EQ(libraryOf(browser.module()), library);
        step();
    }
    EXPECT_EQ(libraryOf(browser.module()), library);
}

TEST(StartUp, WithoutARegistrationTheModuleGoesAndComesBack) {
    SettingsTree settings;
    const SoundBrowser browser;
    const HMODULE library = libraryOf(browser.module());
    char path[MAX_PATH];
    GetModuleFileNameA(library, path, MAX_PATH);
    EXPECT_EQ(browser.module().GetListenerState(), 0u);
    const PassedText url(browser.runtime(), std::string_view("http://h.example/a.zip"));
    EXPECT_EQ(browser.module().ShouldLoad(6, url, url, nullptr, url), 1);
    EXPECT_TRUE(FreeLibrary(library));
    ASSERT_EQ(GetModuleHandleA(path), nullptr);
    EXPECT_EQ(ModuleExports(loadLibrary(path)).GetListenerState(), 0u);
    FreeLibrary(GetModuleHandleA(path));
}
#endif

TEST(StartUp, WithoutTheExtensionAndLateItTakesWhatComes) {
    Installation installation;
    installation.settings.set("Extensions", "zip");
    auto& browser = installation.browser;
    auto& window = browser.opensWindow();
    auto& underWay = browser.clicks("http://h.example/a.zip");
    EXPECT_EQ(browser.intoModule([&] { return browser.module().Observe(nullptr, "profile-after-change"); }),
              NS_OK);
    browser.answers(underWay, 200, {{"Content-Type", "application/zip"}});
    EXPECT_TRUE(underWay.cancelled());
    browser.closesWindow(window);
}

TEST(StartUp, APieceOfTheStartUpTopicEndsAllRegistration) {
    for (const char* topic : {"-startup", "startup", ""}) {
        SettingsTree settings;
        SoundBrowser browser;
        EXPECT_EQ(browser.module().Observe(nullptr, topic), NS_OK);
        EXPECT_EQ(browser.module().Observe(nullptr, "profile-after-change"), NS_OK);
        EXPECT_TRUE(browser.observedTopics().empty()) << topic;
    }
}

TEST(StartUp, AnswersWithoutWhatItNeeds) {
    const BrowserOptions rows[] = {{.hiddenEntries = allEntryPoints()},
                                   {.missingServices = {"@zab/mozilla_cc_helper8;1"}}};
    for (const auto& options : rows) {
        SettingsTree settings;
        SoundBrowser browser(options);
        EXPECT_EQ(browser.startsUp(), NS_ERROR_UNEXPECTED);
        auto& page = browser.opensPage("http://site.example/");
        auto& click = browser.clicks("http://site.example/archive.zip", &page);
        browser.answers(click, 200, {{"Content-Type", "application/zip"}});
        browser.mouse(u"mousedown", &page);
        browser.selectsTab(u"17");
        browser.unloads(u"17");
        EXPECT_FALSE(click.cancelled());
    }
}

}  // namespace
}  // namespace zab::testbed
