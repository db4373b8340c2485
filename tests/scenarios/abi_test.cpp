// The module's objects through the browser's own tables: each slot does its own work, and arguments and results
// cross in the widths that the browser's compiler gives them.
#include <algorithm>
#include <sstream>

#include "binding/base_window.h"
#include "binding/wide_win32.h"
#include "browser/base_window.h"
#include "scenarios/scenario.h"

namespace zab::testbed {
namespace {

std::uint64_t argument(const void* place) { return reinterpret_cast<std::uint64_t>(place); }

/// What a query of an object of the module answers; it is given back at once, for the object lives on.
void* baseOf(Browser& browser, void* object, const nsIID& iid) {
    void* base = nullptr;
    browser.callModule(StandInCall::queryInterface, object, argument(&iid), argument(&base));
    if (base != nullptr) browser.callModule(StandInCall::release, base);
    return base;
}

bool tellsOf(Browser& browser, const std::string& piece) {
    return std::ranges::any_of(browser.takesDebugLines(),
                               [&](const std::string& line) { return line.find(piece) != std::string::npos; });
}

class ObserverOfVersion : public ::testing::TestWithParam<int> {};

TEST_P(ObserverOfVersion, WorksThroughEachOfItsBasesAndIsOneObject) {
    SettingsTree settings;
    settings.set("Extensions", "zip");
    SoundBrowser browser({.version = GetParam()});
    browser.startsUp();
    nsIObserver* observer = browser.observers().front();
    void* const identity = baseOf(browser, observer, nsISupports::kIID);
    ASSERT_NE(identity, nullptr);
    for (const auto& iid :
         {nsIObserver::kIID, nsIHttpNotify::kIID, nsIHttpHeaderVisitor::kIID, nsIHttpHeaderVisitor_7::kIID}) {
        void* base = baseOf(browser, observer, iid);
        ASSERT_NE(base, nullptr);
        EXPECT_EQ(baseOf(browser, base, nsISupports::kIID), identity) << "one identity from every base";
    }
    EXPECT_EQ(baseOf(browser, observer, nsIObserverService::kIID), nullptr);

    void* notify = baseOf(browser, observer, nsIHttpNotify::kIID);
    auto& stopped =
        browser.make<Channel>(Request{.url = "http://www.mozilla.org/thisrequestistransferredtozab.stop"});
    EXPECT_EQ(browser.callModule(StandInCall::modifyRequest, notify, argument(stopped.asSupports())), NS_OK);
    EXPECT_TRUE(stopped.cancelled());
    // The browser hands the headers to the visitor of its generation.
    auto& examined = browser.make<Channel>(Request{.url = "http://h.example/"});
    examined.status = 200;
    examined.responseHeaders = {{"Content-Disposition", "attachment; filename=x.visited"}};
    browser.takesDebugLines();
    EXPECT_EQ(browser.callModule(StandInCall::examineResponse, notify, argument(examined.asSupports())), NS_OK);
    EXPECT_TRUE(tellsOf(browser, "'visited'"));
}

INSTANTIATE_TEST_SUITE_P(BothGenerations, ObserverOfVersion, ::testing::Values(6, 52));

TEST(Abi, TheWindowObserverTakesMouseEventsBehindItsInterface) {
    SettingsTree settings;
    settings.set("Extensions", "zip").set("SpecialKeys\\UseKeyToPrevent", 1u);
    settings.set("SpecialKeys\\AltP", 1u).set("SpecialKeys\\CheckMouse", 1u);
    SoundBrowser browser;
    browser.startsUp();
    const HeldKeys alt({VK_MENU});
    auto& press = browser.make<Event>(u"mousedown");
    EXPECT_EQ(
        browser.callModule(StandInCall::mouseEvent, browser.observers().back(), argument(press.asSupports())),
        NS_OK);
    browser.takesDebugLines();
    browser.answers(browser.clicks("http://h.example/a.zip"), 200, {{"Content-Type", "application/zip"}});
    EXPECT_TRUE(tellsOf(browser, "UseKeyToPrevent")) << "the keys of the press count";
}

TEST(Abi, EveryOperationOfABaseWindowReachesItsOwnSlotInEveryLayout) {
    for (const auto& layout : windowLayouts()) {
        SoundBrowser browser;
        auto& window = browser.make<BaseWindow>(layout);
        const std::string name = layout.name;
        const auto adapter = GetBaseWindow(window.asSupports(), name == "B17" ? 17 : 16);
        ASSERT_TRUE(adapter) << name;
        const auto blanked = [](const std::string& text) { return " " + text + " "; };
        std::uint32_t slot = 3;
        std::istringstream operations(windowLayouts()[0].operations);  // which the module is written against
        for (std::string operation; operations >> operation; ++slot) {
            const auto where = std::string(operation).append(" in layout ").append(name);
            std::uint64_t words[kStandInArguments], arguments[kStandInArguments];
            std::ranges::fill(words, 0xAAAAAAAA'00000000);
            std::ranges::transform(words, arguments, [](auto& word) { return argument(&word); });
            const bool known = blanked(layout.operations).find(blanked(operation)) != std::string::npos;
            window.calls.clear();
            EXPECT_EQ(browser.runtime().callSlot(adapter.get(), slot, arguments),
                      known ? NS_OK : NS_ERROR_NOT_IMPLEMENTED)
                << where;
            ASSERT_EQ(window.calls.size(), known ? 1u : 0u) << where;
            EXPECT_EQ(known ? window.calls[0].operation : operation, operation) << where;
            if (operation == "getVisibility") {
                EXPECT_EQ(words[0], 0xAAAAAAAA'00000001) << "the caller's 4 bytes and no more: " << where;
            }
            for (std::uint32_t n = 0; n < kStandInArguments && operation == "initWindow"; ++n) {
                const auto mask =
                    n < 2 ? ~0ull : 0xFFFFFFFFull;  // two pointers, then numbers; some on the stack
                EXPECT_EQ(window.calls[0].arguments[n] & mask, arguments[n] & mask) << where << " " << n;
            }
        }
    }
}

}  // namespace
}  // namespace zab::testbed
