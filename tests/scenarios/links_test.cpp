// What the user reaches by hand: the menu's commands, and the content policy with its keys.
#include "scenarios/import_hook.h"
#include "scenarios/scenario.h"
#include "transfer/failure_report.h"

namespace zab::testbed {
namespace {

using nlohmann::json;

constexpr nsresult kFailure = NS_ERROR_FAILURE;
constexpr std::uint32_t kImage = 3, kObject = 5, kDocument = 6;
constexpr std::int32_t kAccept = 1, kReject = -1;
constexpr const char* kPage = "http://site.example/dir/page.html";

/// An installed download manager, and a browser that has started up.
class Links : public Scenario {
  protected:
    Links() {
        settings.set("Extensions", "zip rar");
        settings.set("SpecialKeys\\UseKeyToForce", 1u).set("SpecialKeys\\CtrlF", 1u);
        browser.startsUp();
    }

    PassedText wide(std::u16string_view text) { return PassedText(browser.runtime(), text); }
    PassedText narrow(std::string_view text) { return PassedText(browser.runtime(), text); }

    nsresult downloadsAll(std::u16string_view markup) {
        const auto page = wide(u"http://site.example/dir/page.html"), cookies = wide(u"session=1");
        const auto text = wide(markup);
        return static_cast<nsresult>(
            browser.intoModule([&] { return browser.module().DownloadAllWithZAB(text, page, cookies); }));
    }
    nsresult downloadsMedia(std::u16string_view documentId, bool ten) {
        const auto id = wide(documentId);
        return static_cast<nsresult>(browser.intoModule([&] {
            const auto& module = browser.module();
            return (ten ? module.DownloadLast10FLVwithZAB : module.DownloadLastFLVwithZAB)(id);
        }));
    }
    std::int32_t asksPolicy(std::uint32_t type, std::string_view url) {
        const auto address = narrow(url), origin = narrow(kPage), mime = narrow("");
        const auto document = wide(u"17");
        return static_cast<std::int32_t>(browser.intoModule([&] {
            return static_cast<std::uint32_t>(
                browser.module().ShouldLoad2(type, address, origin, nullptr, mime, document));
        }));
    }
    std::int32_t asksOldPolicy(std::string_view url) {
        const auto address = narrow(url);
        return static_cast<std::int32_t>(browser.intoModule([&] {
            return static_cast<std::uint32_t>(browser.module().ShouldLoad_old1(kDocument, address, nullptr));
        }));
    }
    /// A click with the force key held, from the policy to the answer, whatever the policy says.
    Channel& forces(const std::string& url) {
        asksPolicy(kDocument, url);
        return goesOn(url);
    }
    Channel& goesOn(const std::string& url) {
        auto& channel = browser.requests({.url = url});
        for (const char* topic :
             {"http-on-examine-response", "http-on-examine-merged-response", "http-on-examine-cached-response"})
            browser.answers(channel, 200, {{"Content-Disposition", "attachment; filename=a.zip"}}, topic);
        return channel;
    }
};

TEST_F(Links, TheLinkCommandTellsWhatThePageTold) {
    const auto url = wide(u"http://site.example/a.zip#part"), referrer = wide(u"http://site.example/"),
               cookies = wide(u"session=1"), text = wide(u"An archive");
    EXPECT_EQ(
        browser.intoModule([&] { return browser.module().DownloadLinkWithZAB(url, referrer, cookies, text); }),
        NS_OK);
    const json told = manager.received(0);
    EXPECT_EQ(told["url"], "http://site.example/a.zip");
    EXPECT_EQ(told["referrer"], "http://site.example/");
    EXPECT_EQ(told["cookies"], "session=1");
    EXPECT_EQ(told["flags"], 4);
    EXPECT_EQ(told["extraData"][17], "An archive");

    const auto nothing = wide(u"");
    EXPECT_EQ(browser.intoModule(
                  [&] { return browser.module().DownloadLinkWithZAB(nothing, referrer, cookies, text); }),
              kFailure);
}

TEST_F(Links, ABatchArrivesInPageOrder) {
    std::u16string markup =
        u"<base href='/b/'><a href='javascript:x'>no</a><a href='http://cdn.example/0'>cdn</a>";
    constexpr int kCount = 500;
    for (int i = 1; i < kCount; ++i) {
        std::u16string number;
        for (const char c : std::to_string(i)) number += static_cast<char16_t>(c);
        markup += u"<a href='" + number + u"'>\u00E4 &amp; b</a>";
    }
    static constexpr HookedImport kConnects[] = {{"CoCreateInstance", kCannotFail}};
    const ImportHook hook(browser, kConnects);
    browser.faults().none();
    EXPECT_EQ(downloadsAll(markup), NS_OK);
    EXPECT_EQ(browser.faults().countOf("CoCreateInstance"), 1u) << "one connection serves the batch";
    // A link that was lost or came twice would move all behind it.
    for (int i = 0; i < kCount; i += i < 10 ? 1 : 7) {
        const json told = manager.received(static_cast<std::size_t>(i));
        ASSERT_EQ(told["url"], (i == 0 ? "http://cdn.example/" : "http://site.example/b/") + std::to_string(i));
        ASSERT_EQ(told["flags"], 0);
        ASSERT_EQ(told["referrer"], kPage);
        ASSERT_EQ(told["extraData"][7], kPage);
        ASSERT_EQ(told["cookies"], i == 0 ? json() : json("session=1"))
            << "another host gets none of the page's";
    }
}

TEST_F(Links, APageWithNothingToTakeIsToldOnce) {
    EXPECT_EQ(downloadsAll(u"<a href='#top'>top</a><p>text"), kFailure);
    EXPECT_TRUE(answerMessageBox(kOk).value_or(ShownBox{}).text.starts_with(u"Cannot find the links!"));
    for (const bool ten : {false, true}) {
        EXPECT_EQ(downloadsMedia(u"17", ten), kFailure);
        const auto box = answerMessageBox(kOk).value_or(ShownBox{});
        EXPECT_EQ(box.title, u"Saving FLV video");
        EXPECT_TRUE(box.text.starts_with(u"Cannot find FLV video links on this web page."));
    }
    EXPECT_FALSE(messageBoxIsOpen());
}

TEST_F(Links, TheNewestMediaOfAPageAreHandedOver) {
    auto& page = browser.opensPage(kPage, u"Page", 17);
    const auto url = [](int number) { return "http://cdn.example/" + std::to_string(number) + ".flv"; };
    for (int i = 0; i < 12; ++i) {
        auto& channel = browser.requests({.url = url(i), .loadFlags = kEmbedded, .page = &page});
        browser.answers(channel, 200, {{"Content-Type", "video/x-flv"}, {"Content-Length", "5000"}});
    }
    EXPECT_EQ(downloadsMedia(u"17", false), NS_OK);
    EXPECT_EQ(downloadsMedia(u"17", true), NS_OK);
    EXPECT_EQ(manager.received(0)["url"], url(11));
    for (std::size_t i = 1; i <= 10; ++i) {
        const json told = manager.received(i);
        EXPECT_EQ(told["url"], url(12 - static_cast<int>(i)));
        EXPECT_EQ(told["flags"], 0);
        EXPECT_EQ(told["extraData"][2], "Page");
        EXPECT_EQ(told["extraData"][3], "flv");
        EXPECT_EQ(told["extraData"][6], "5000");
        EXPECT_EQ(told["extraData"][7], kPage);
    }
    EXPECT_EQ(manager.count(), 11u) << "the newest ten of twelve, behind the newest one";
}

TEST_F(Links, AForcedNavigationIsHandedOverOnce) {
    const HeldKeys keys({kControl});
    EXPECT_EQ(asksPolicy(kImage, "http://site.example/i.png"), kAccept);
    browser.takesDebugLines();
    EXPECT_EQ(asksPolicy(kObject, "http://site.example/a.swf"), kAccept);
    EXPECT_EQ(browser.takesDebugLines(), std::vector<std::string>{"********** docID=17"});
    EXPECT_EQ(asksPolicy(kDocument, "http://site.example/view?id=1"), kReject);
    EXPECT_EQ(manager.received(0)["flags"], 0x804);
    EXPECT_EQ(manager.received(0)["referrer"], kPage);
    // A browser that goes on all the same, behind a picture of the same address.
    EXPECT_FALSE(
        browser.requests({.url = "http://site.example/view?id=1", .loadFlags = kEmbedded}).cancelled());
    const auto& channel = goesOn("http://site.example/view?id=1");
    EXPECT_TRUE(channel.cancelled());
    // The user asks again, and then a page asks without the policy.
    forces("http://site.example/view?id=1");
    goesOn("http://site.example/view?id=1");
    goesOn("http://site.example/last");
    EXPECT_EQ(manager.received(1)["url"], "http://site.example/view?id=1");
    EXPECT_EQ(manager.received(2)["url"], "http://site.example/view?id=1");
    EXPECT_EQ(manager.received(3)["url"], "http://site.example/last") << "and nothing came in between";
}

#ifdef _WIN32  // the process of a download manager, and COM between
TEST_F(Links, AForcedNavigationThatFailsIsTriedOnceAndToldOnce) {
    constexpr DWORD kBusy = static_cast<DWORD>(RPC_E_SERVERCALL_RETRYLATER),
                    kNotNow = static_cast<DWORD>(RPC_E_CANTCALLOUT_ININPUTSYNCCALL);
    const struct {
        bool registered;
        DWORD mute, answer;
        int fail;           // of three navigations
        std::size_t calls;  // for each that fails
        bool told;
        const char* why;
    } rows[] = {
        {false, 0, 0, 3, 0, true, "there is none"},
        {true, 1, 0, 1, 0, true, "it starts and is never ready"},
        {true, 0, kBusy, 3, 1, true, "it is busy"},
        {true, 0, kBusy, 2, 1, true, "it is busy twice"},
        {true, 0, kNotNow, 3, 1, false, "no call can be made now"},
    };
    static constexpr HookedImport kConnects[] = {{"CoCreateInstance", kCannotFail}};
    const ImportHook hook(browser, kConnects);
    const HeldKeys keys({kControl});
    for (const auto& row : rows) {
        ASSERT_TRUE(manager.isRegistered(false));  // none is running
        ASSERT_TRUE(manager.isRegistered(row.registered));
        manager.set("TestbedMute", row.mute);
        // A process that is never ready is waited for each time: once is enough.
        for (int navigation = 1; navigation <= (row.mute != 0 ? 1 : 3); ++navigation) {
            const bool fails = navigation <= row.fail;
            const std::size_t before = manager.count();
            manager.set("TestbedAnswer", fails ? row.answer : 0);
            browser.faults().none();
            EXPECT_NE(forces("http://site.example/view").cancelled(), fails) << row.why;
            EXPECT_EQ(browser.faults().countOf("CoCreateInstance"), 1u) << row.why;
            EXPECT_EQ(manager.count() - before, fails ? row.calls : 1u) << row.why;
            const bool told = fails && row.told;
            EXPECT_EQ(answerMessageBox(kOk, std::chrono::milliseconds(told ? 10'000 : 300)).has_value(), told)
                << row.why;
            EXPECT_FALSE(messageBoxIsOpen()) << row.why;
        }
    }
    ASSERT_TRUE(manager.isRegistered(true));
}
#endif

TEST_F(Links, ThePolicyOfOldBrowsersTakesClicksOnCaughtFiles) {
    EXPECT_EQ(asksOldPolicy("http://site.example/a.zip"), kAccept) << "nobody clicked";
    browser.mouse(u"mousedown");
    EXPECT_EQ(asksOldPolicy("http://site.example/a.html"), kAccept) << "not in the list";
    EXPECT_EQ(asksOldPolicy("http://site.example/a.zip"), kAccept) << "the click led to the page before";
    browser.mouse(u"mousedown");
    EXPECT_EQ(asksOldPolicy("http://site.example/a.zip"), kReject);
    EXPECT_EQ(manager.received(0)["flags"], 0x804);
    settings.set("ExceptionServers", "site.example");
    browser.mouse(u"mousedown");
    EXPECT_EQ(asksOldPolicy("http://site.example/a.zip"), kAccept) << "an excepted server";
}

TEST_F(Links, ACommandThatCannotCallNowIsRepeated) {
    static constexpr HookedImport kConnects[] = {{"CoCreateInstance", transfer_failure::kNoCallsNow}};
    const ImportHook hook(browser, kConnects);
    browser.faults().failNth(1, "CoCreateInstance");
    EXPECT_EQ(downloadsAll(u"<a href=1><a href=2>"), NS_OK) << "it goes on";
    EXPECT_EQ(manager.count(), 0u);
    EXPECT_EQ(meanwhile([&] { return manager.received(1); })["url"], "http://site.example/dir/2");
    EXPECT_EQ(browser.faults().countOf("CoCreateInstance"), 2u);
    EXPECT_FALSE(messageBoxIsOpen());

    browser.faults().failAll("CoCreateInstance");
    EXPECT_EQ(downloadsAll(u"<a href=1>"), NS_OK);
    EXPECT_TRUE(meanwhile([] { return answerMessageBox(kOk); })) << "there is no end of it";
    EXPECT_EQ(browser.faults().countOf("CoCreateInstance"), 4u);
}

TEST_F(Links, ABatchEndsWithItsConnectionAndIsToldOnce) {
    manager.set("TestbedDie", std::uint32_t{3});
    std::u16string markup;
    for (const char16_t c : std::u16string_view(u"123456")) markup += std::u16string(u"<a href=") + c + u">";
    EXPECT_EQ(downloadsAll(markup), NS_OK) << "two links arrived";
    const auto box = answerMessageBox(kOk);
    EXPECT_TRUE(box);
    EXPECT_FALSE(messageBoxIsOpen()) << "told once";
    manager.set("TestbedDie", std::uint32_t{0});
    const auto url = wide(u"http://site.example/later"), nothing = wide(u"");
    browser.intoModule([&] { return browser.module().DownloadLinkWithZAB(url, nothing, nothing, nothing); });
    EXPECT_EQ(manager.received(2)["url"], "http://site.example/dir/3") << "during which it died";
    EXPECT_EQ(manager.received(3)["url"], "http://site.example/later") << "none of the batch behind it";
}

}  // namespace
}  // namespace zab::testbed
