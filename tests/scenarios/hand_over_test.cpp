// What goes wrong around a hand-over: the browser keeps the download and goes on, and the user is told.
#include <algorithm>
#include <chrono>

#include "scenarios/import_hook.h"
#include "scenarios/scenario.h"

namespace zab::testbed {
namespace {

using namespace std::chrono_literals;

constexpr const char* kPage = "http://site.example/dir/page.html";

class HandOver : public Scenario {
  protected:
    HandOver() {
        settings.set("Extensions", "zip").set("SpecialKeys\\UseKeyToForce", 1u).set("SpecialKeys\\CtrlF", 1u);
        browser.startsUp();
    }
    ~HandOver() override { EXPECT_FALSE(messageBoxIsOpen()); }

    /// A click with the force key held, from the policy to the answer, whatever the policy says.
    Channel& forces(const std::string& url) {
        browser.asksPolicy(kDocument, url, kPage);
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

/// The three ways of a link to the download manager; each tells whether it was taken. `secret` stands wherever
/// a browser keeps one.
const struct {
    const char* name;
    bool (*taken)(Browser& browser, Page& page, const std::string& secret);
} kWays[] = {
    {"a response",
     [](Browser& browser, Page& page, const std::string& secret) {
         auto& channel = browser.requests(
             {.url = "http://h.example/a.zip?token=" + secret,
              .method = "POST",
              .headers = {{"Cookie", "session=" + secret}, {"Authorization", "Basic dTpIdXNoNw=="}},
              .page = &page,
              .upload = Upload{.bytes = "password=" + secret}});
         browser.answers(channel, 200, kZip);
         return channel.cancelled();
     }},
    {"an FTP redirect",
     [](Browser& browser, Page&, const std::string& secret) {
         auto& channel = browser.clicks("http://h.example/moved?token=" + secret);
         browser.answers(channel, 302, {{"Location", "ftp://u:" + secret + "@h.example/a.zip"}});
         EXPECT_FALSE(channel.cancelled()) << "it is the next request that ends";
         return !channel.written.empty();
     }},
    {"a forced link",
     [](Browser& browser, Page& page, const std::string& secret) {
         const HeldKeys control({kControl});
         return browser
             .requests({.url = "http://u:" + secret + "@h.example/page",
                        .headers = {{"Cookie", "session=" + secret}},
                        .page = &page})
             .cancelled();
     }},
};

TEST_F(HandOver, ThatFailsLeavesTheDownloadAndIsTold) {
    constexpr const char* kProgram = SettingsTree::kProgram;
    const struct {
        bool registered, dies;
        const char* program;  // of the download manager; null: none is installed
        int button;
        const char* told;  // how the text begins
        const char* why;
    } rows[] = {
        {true, true, kProgram, kOk, "Cannot transfer the download to ZAB\r\nError 0x8", "dies in the call"},
        {false, false, kProgram, kOk,
         "Cannot transfer the download to ZAB\r\n\r\nThe required ZAB components "
         "are not registered",
         "is not registered"},
        {false, false, nullptr, kNo,
         "Cannot transfer file download to Zabrion. It's possible that it's not "
         "installed.",
         "is not installed"},
    };
    auto& page = browser.opensPage("http://h.example/page.html");
    for (const auto& row : rows) {
        ASSERT_TRUE(manager.isRegistered(row.registered));
        manager.set("TestbedDie", std::uint32_t{row.dies});
        if (row.program == nullptr) settings.remove("ExePath");
        for (const auto& way : kWays) {
            const auto where = std::string(way.name) + ", and the download manager " + row.why;
            // Nobody has answered a box yet: the browser does not wait for the user.
            EXPECT_FALSE(way.taken(browser, page, "")) << where;
            const auto box = answerMessageBox(row.button);
            ASSERT_TRUE(box) << where;
            EXPECT_EQ(box->title, u"\"ZAB Integration\" extension");
            EXPECT_TRUE(utf8FromUtf16(box->text).starts_with(row.told)) << utf8FromUtf16(box->text);
        }
    }
    ASSERT_TRUE(manager.isRegistered(true));
    for (const auto& way : kWays) EXPECT_TRUE(way.taken(browser, page, "")) << "it is back: " << way.name;
}

TEST_F(HandOver, ThatTheBrowserDoesNotLetGoOfIsToldAsThat) {
    browser.faults().failAll("helper5.61");
    browser.takesDebugLines();
    EXPECT_FALSE(kWays[0].taken(browser, browser.opensPage("http://h.example/page.html"), ""));
    browser.faults().none();
    EXPECT_TRUE(std::ranges::any_of(browser.takesDebugLines(), [](const std::string& line) {
        return line.find("The download manager has this download") != std::string::npos;
    }));
}

TEST_F(HandOver, OfAForcedNavigationIsMadeOnce) {
    constexpr std::uint32_t kObject = 5;
    constexpr std::int32_t kAccept = 1, kReject = -1;
    const std::string url = "http://site.example/view?id=1";
    std::optional<HeldKeys> keys(std::in_place, std::vector<std::uint8_t>{kControl});
    EXPECT_EQ(browser.asksPolicy(kImage, "http://site.example/i.png", kPage), kAccept);
    browser.takesDebugLines();
    EXPECT_EQ(browser.asksPolicy(kObject, "http://site.example/a.swf", kPage), kAccept);
    EXPECT_EQ(browser.takesDebugLines(), std::vector<std::string>{"********** docID=17"});
    EXPECT_EQ(browser.asksPolicy(kDocument, url, kPage), kReject);
    EXPECT_EQ(manager.received(0)["flags"], 0x804);
    EXPECT_EQ(manager.received(0)["referrer"], kPage);
    // A browser that goes on all the same, behind a picture of the same address.
    EXPECT_FALSE(browser.requests({.url = url, .loadFlags = kEmbedded}).cancelled());
    EXPECT_TRUE(goesOn(url).cancelled());
    // The user asks again, and then a page asks without the policy.
    forces(url);
    goesOn(url);
    goesOn("http://site.example/last");
    EXPECT_EQ(manager.received(1)["url"], url);
    EXPECT_EQ(manager.received(2)["url"], url);
    EXPECT_EQ(manager.received(3)["url"], "http://site.example/last") << "and nothing came in between";

    EXPECT_EQ(browser.asksPolicy(kDocument, url, kPage), kReject);
    keys.reset();
    EXPECT_EQ(browser.asksPolicy(kDocument, url, kPage), kAccept);
    EXPECT_FALSE(browser.requests({.url = url}).cancelled()) << "asked for anew, without the key";
}

TEST_F(HandOver, OfAForcedNavigationThatFailsIsTriedOnceAndToldOnce) {
    [[maybe_unused]] constexpr std::uint32_t kBusy = 0x8001010A, kNotNow = 0x8001010D;
    static constexpr HookedImport kConnects[] = {{"CoCreateInstance", 0x80040154}};
    const struct {
        const char* failing;
        std::uint32_t mute, answer;
        int fail;           // of three navigations
        std::size_t calls;  // for each that fails
        bool told;
        const char* why;
    } rows[] = {
        {"CoCreateInstance", 0, 0, 3, 0, true, "there is none"},
#ifdef _WIN32  // the process of a download manager, and COM between
        {"none", 1, 0, 1, 0, true, "it starts and is never ready"},
        {"none", 0, kBusy, 2, 1, true, "it is busy twice"},
        {"none", 0, kNotNow, 3, 1, false, "no call can be made now"},
#endif
    };
    const ImportHook hook(browser, kConnects);
    const HeldKeys keys({kControl});
    for (const auto& row : rows) {
        ASSERT_TRUE(manager.isRegistered(false) && manager.isRegistered(true));  // none is running
        manager.set("TestbedMute", row.mute);
        // A process that is never ready is waited for each time: once is enough.
        for (int navigation = 1; navigation <= (row.mute != 0 ? 1 : 3); ++navigation) {
            const bool fails = navigation <= row.fail, told = fails && row.told;
            const std::size_t before = manager.count();
            manager.set("TestbedAnswer", fails ? row.answer : 0);
            browser.faults().failAll(row.failing);
            EXPECT_NE(forces("http://site.example/view").cancelled(), fails) << row.why;
            EXPECT_EQ(browser.faults().countOf("CoCreateInstance"), 1u) << row.why;
            EXPECT_EQ(manager.count() - before, fails ? row.calls : 1u) << row.why;
            EXPECT_EQ(answerMessageBox(kOk, told ? 10'000ms : 300ms).has_value(), told) << row.why;
            EXPECT_FALSE(messageBoxIsOpen()) << row.why;
        }
    }
}

TEST_F(HandOver, CookiesAndCredentialsReachTheDownloadManagerOnly) {
    const std::string secret = "Hush7";
    browser.cookies = {{.name = "jar", .value = secret, .host = "h.example"}};
    auto& page = browser.opensPage("http://u:" + secret + "@h.example/page.html?token=" + secret);
    browser.takesDebugLines();
    for (const auto& way : kWays) EXPECT_TRUE(way.taken(browser, page, secret)) << way.name;
    const auto told = manager.received(0);
    EXPECT_EQ(told["cookies"], "session=" + secret);
    EXPECT_EQ(told["password"], secret);
    EXPECT_EQ(told["postData"], "password=" + secret);
    ASSERT_TRUE(manager.isRegistered(false));
    for (const auto& way : kWays) {
        EXPECT_FALSE(way.taken(browser, page, secret)) << way.name;
        const auto box = answerMessageBox(kOk);
        ASSERT_TRUE(box);
        EXPECT_EQ(box->text.find(utf16FromUtf8(secret)), std::u16string::npos);
    }
    settings.set("Extensions", "rar");
    EXPECT_FALSE(kWays[0].taken(browser, page, secret)) << "not in the list";
    const auto lines = browser.takesDebugLines();
    EXPECT_GE(lines.size(), 2 * std::size(kWays)) << "each exchange is told";
    for (const auto& line : lines)
        for (const auto& hidden : {secret, std::string("dTpIdXNoNw")})
            EXPECT_EQ(line.find(hidden), std::string::npos) << line;
}

TEST(FirstStart, TellsOnceThatTheDownloadManagerIsMissing) {
    const auto toldAtStart = [](std::chrono::milliseconds patience = 300ms) {
        SoundBrowser browser;
        browser.startsUp();
        browser.clicks("http://h.example/");
        const auto box = answerMessageBox(kNo, patience);
        browser.clicks("http://h.example/");
        EXPECT_FALSE(answerMessageBox(kNo, 300ms)) << "once in a start";
        return box ? utf8FromUtf16(box->text) : "";
    };
    const std::string missing = "You have installed \"ZAB Integration\" extension successfully. Unfortunately";
    {
        SettingsTree settings;
        EXPECT_EQ(toldAtStart(), "") << "a new browser beside an installed download manager";
        settings.remove("ExePath");
        EXPECT_EQ(toldAtStart(), "") << "gone since, but this browser is known";
    }
    SettingsTree settings;
    settings.remove("ExePath");
    EXPECT_TRUE(toldAtStart(10s).starts_with(missing));
    EXPECT_EQ(settings.number("ZABBI\\zab_scenarios\\int"), 1u);
    EXPECT_EQ(toldAtStart(), "") << "the second start";
}

}  // namespace
}  // namespace zab::testbed
