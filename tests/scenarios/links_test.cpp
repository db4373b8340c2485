// What the user reaches by hand: the menu's commands, and the content policy with its keys.
#include "scenarios/import_hook.h"
#include "scenarios/scenario.h"
#include "transfer/failure_report.h"

namespace zab::testbed {
namespace {

constexpr const char* kPage = "http://site.example/dir/page.html";
constexpr HookedImport kConnects[] = {{"CoCreateInstance", transfer_failure::kNoCallsNow}};

class Links : public Scenario {
  protected:
    Links() {
        settings.set("Extensions", "zip rar");
        browser.startsUp();
    }

    nsresult downloadsAll(std::string_view markup) { return browser.downloadsAll(markup, kPage, "session=1"); }
    std::int32_t asksOldPolicy(std::string_view url) {
        const auto address = browser.narrow(url);
        return static_cast<std::int32_t>(browser.intoModule([&] {
            return static_cast<std::uint32_t>(browser.module().ShouldLoad_old1(kDocument, address, nullptr));
        }));
    }
};

TEST_F(Links, TheLinkCommandTellsWhatThePageTold) {
    EXPECT_EQ(browser.downloadsLink("http://site.example/a.zip#part", kPage, "session=1", "An archive"), NS_OK);
    const json told = manager.received(0);
    EXPECT_EQ(json({told["url"], told["referrer"], told["cookies"], told["flags"], told["extraData"][17]}),
              json({"http://site.example/a.zip", kPage, "session=1", 4, "An archive"}));
    EXPECT_EQ(browser.downloadsLink("", kPage), NS_ERROR_FAILURE);
}

TEST_F(Links, ABatchArrivesInPageOrder) {
    constexpr int kCount = 500;
    std::string markup = "<base href='/b/'><a href='javascript:x'>no</a><a href='http://cdn.example/0'>cdn</a>";
    for (int i = 1; i < kCount; ++i) markup += "<a href='" + std::to_string(i) + "'>\u00E4 &amp; b</a>";
    const ImportHook hook(browser, kConnects);
    browser.faults().none();
    EXPECT_EQ(downloadsAll(markup), NS_OK);
    EXPECT_EQ(browser.faults().countOf("CoCreateInstance"), 1u) << "one connection serves the batch";
    EXPECT_EQ(browser.takesDebugLines(), std::vector<std::string>{}) << "nothing was left out";
    // A link that was lost or came twice would move all behind it.
    for (int i = 0; i < kCount; i += i < 10 ? 1 : 7) {
        const json told = manager.received(static_cast<std::size_t>(i));
        ASSERT_EQ(told["url"], (i == 0 ? "http://cdn.example/" : "http://site.example/b/") + std::to_string(i));
        ASSERT_EQ(told["flags"], 0);
        ASSERT_EQ(told["extraData"][7], kPage);
        ASSERT_EQ(told["cookies"], i == 0 ? json() : json("session=1")) << "of the page, for its own host";
    }
}

TEST_F(Links, APageWithNothingToTakeIsToldOnce) {
    EXPECT_EQ(downloadsAll("<a href='#top'>top</a><p>text"), NS_ERROR_FAILURE);
    EXPECT_TRUE(answerMessageBox(kOk).value_or(ShownBox{}).text.starts_with(u"Cannot find the links!"));
    for (const bool ten : {false, true}) {
        EXPECT_EQ(browser.downloadsMedia("17", ten), NS_ERROR_FAILURE);
        const auto box = answerMessageBox(kOk).value_or(ShownBox{});
        EXPECT_EQ(box.title, u"Saving FLV video");
        EXPECT_TRUE(box.text.starts_with(u"Cannot find FLV video links on this web page."));
    }
    EXPECT_FALSE(messageBoxIsOpen());
}

TEST_F(Links, TheNewestMediaOfAPageAreHandedOver) {
    auto& page = browser.opensPage(kPage, u"Page", 17);
    const auto name = [](std::size_t number) { return std::to_string(number) + ".flv"; };
    for (std::size_t i = 0; i < 12; ++i) browser.offers(page, name(i), "video/x-flv", "5000");
    EXPECT_EQ(browser.downloadsMedia("17"), NS_OK);
    EXPECT_EQ(browser.downloadsMedia("17", true), NS_OK);
    for (std::size_t i = 0; i <= 10; ++i) {
        const json told = manager.received(i), &extra = told["extraData"];
        EXPECT_EQ(
            json({told["url"], told["flags"], extra[2], extra[3], extra[6], extra[7]}),
            json({"http://films.example/" + name(i == 0 ? 11 : 12 - i), 0, "Page", "flv", "5000", kPage}));
    }
    EXPECT_EQ(manager.count(), 11u) << "the newest ten of twelve, behind the newest one";
}

TEST_F(Links, ThePolicyOfOldBrowsersTakesClicksOnCaughtFiles) {
    EXPECT_EQ(asksOldPolicy("http://site.example/a.zip"), 1) << "nobody clicked";
    browser.mouse(u"mousedown");
    EXPECT_EQ(asksOldPolicy("http://site.example/a.html"), 1) << "not in the list";
    EXPECT_EQ(asksOldPolicy("http://site.example/a.zip"), 1) << "the click led to the page before";
    browser.mouse(u"mousedown");
    EXPECT_EQ(asksOldPolicy("http://site.example/a.zip"), -1);
    EXPECT_EQ(manager.received(0)["flags"], 0x804);
    settings.set("ExceptionServers", "site.example");
    browser.mouse(u"mousedown");
    EXPECT_EQ(asksOldPolicy("http://site.example/a.zip"), 1) << "an excepted server";
}

TEST_F(Links, ACommandThatCannotCallNowIsRepeated) {
    const ImportHook hook(browser, kConnects);
    browser.faults().failNth(1, "CoCreateInstance");
    EXPECT_EQ(downloadsAll("<a href=1><a href=2>"), NS_OK) << "it goes on";
    EXPECT_EQ(manager.count(), 0u);
    EXPECT_EQ(meanwhile([&] { return manager.received(1); })["url"], "http://site.example/dir/2");
    EXPECT_EQ(browser.faults().countOf("CoCreateInstance"), 2u);
    EXPECT_FALSE(messageBoxIsOpen());

    browser.faults().failAll("CoCreateInstance");
    EXPECT_EQ(downloadsAll("<a href=1>"), NS_OK);
    EXPECT_TRUE(meanwhile([] { return answerMessageBox(kOk); })) << "there is no end of it";
    EXPECT_EQ(browser.faults().countOf("CoCreateInstance"), 4u);
}

TEST_F(Links, ABatchEndsWithItsConnectionAndIsToldOnce) {
    manager.set("TestbedDie", std::uint32_t{3});
    EXPECT_EQ(downloadsAll("<a href=1><a href=2><a href=3><a href=4>"), NS_OK) << "two links arrived";
    EXPECT_TRUE(answerMessageBox(kOk));
    EXPECT_FALSE(messageBoxIsOpen()) << "told once";
    manager.set("TestbedDie", std::uint32_t{0});
    browser.downloadsLink("http://site.example/later");
    EXPECT_EQ(manager.received(2)["url"], "http://site.example/dir/3") << "during which it died";
    EXPECT_EQ(manager.received(3)["url"], "http://site.example/later") << "none of the batch behind it";
}

}  // namespace
}  // namespace zab::testbed
