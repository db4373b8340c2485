// Downloads through the module: caught, handed over and cancelled, or left with the browser.
#include "scenarios/scenario.h"

namespace zab::testbed {
namespace {

using nlohmann::json;

constexpr const char* kSentinel = "http://www.mozilla.org/thisrequestistransferredtozab.stop";

/// A desktop with an installed download manager and a browser that has started up.
class Interception : public Scenario {
  protected:
    Interception() {
        settings.set("Extensions", "zip rar 7z exe");
        browser.startsUp();
    }
};

TEST_F(Interception, ATypicalDownloadTravelsWithAllThatTheBrowserWouldHaveSent) {
    auto& page = browser.opensPage("http://site.example/page.html", u"Archives");
    auto& channel = browser.requests({.url = "http://site.example/get?id=7#part",
                                      .headers = {{"Referer", "http://site.example/page.html"},
                                                  {"Cookie", "session=1"},
                                                  {"User-Agent", "Agent/52"},
                                                  {"Authorization", "Basic dTpw"}},
                                      .page = &page});
    browser.answers(channel, 200,
                    {{"Content-Disposition", "attachment; filename=\"a b.zip\""},
                     {"Content-Type", "application/octet-stream; charset=x"},
                     {"Content-Length", "5000"}});
    EXPECT_EQ(channel.cancels, std::vector<nsresult>{kTakenOverStatus});
    const json told = manager.received(0);
    EXPECT_EQ(told["url"], "http://site.example/get?id=7");
    EXPECT_EQ(told["referrer"], "http://site.example/page.html");
    EXPECT_EQ(told["cookies"], "session=1");
    EXPECT_EQ(told["user"], "u");
    EXPECT_EQ(told["password"], "p");
    EXPECT_EQ(told["fileName"], "a b.zip");
    EXPECT_EQ(told["flags"], 0x1008);
    EXPECT_EQ(told["extraData"][0], "Agent/52");
    EXPECT_EQ(told["extraData"][2], "Archives");
    EXPECT_EQ(told["extraData"][3], "EXE") << "what the type says outweighs the name";
    EXPECT_EQ(told["extraData"][5], "application/octet-stream");
    EXPECT_EQ(told["extraData"][6], "5000");
    EXPECT_EQ(told["extraData"][7], "http://site.example/page.html");
}

TEST_F(Interception, OnlyWhatTheUserClicksWithTheKeyIsForced) {
    settings.set("SpecialKeys\\UseKeyToForce", 1u).set("SpecialKeys\\CtrlF", 1u);
    const HeldKeys control({kControl});
    EXPECT_EQ(browser.clicks("http://h.example/page").cancels, std::vector<nsresult>{kTakenOverStatus});
    EXPECT_EQ(manager.received(0)["flags"], 0x804);
    EXPECT_FALSE(browser.requests({.url = "http://h.example/frame", .loadFlags = kDocumentLoad}).cancelled());
    settings.set("SpecialKeys\\CheckMouse", 1u);
    EXPECT_FALSE(browser.clicks("http://h.example/page").cancelled()) << "the key came after the press";
    browser.mouse(u"mousedown");
    EXPECT_TRUE(browser.clicks("http://h.example/page").cancelled());
}

TEST_F(Interception, AnFtpRedirectIsTakenAndItsRequestDiesBeforeItIsSent) {
    auto& channel = browser.clicks("http://h.example/moved");
    browser.answers(channel, 302, {{"Location", "ftp://h.example/pub/archive.zip"}});
    EXPECT_EQ(channel.written, (Headers{{"Location", kSentinel}}));
    EXPECT_FALSE(channel.cancelled());
    const json told = manager.received(0);
    EXPECT_EQ(told["url"], "ftp://h.example/pub/archive.zip");
    EXPECT_EQ(told["flags"], 0x804);
    EXPECT_EQ(told["referrer"], nullptr);
    EXPECT_EQ(browser.clicks(kSentinel).cancels, std::vector<nsresult>{kTakenOverStatus});
    EXPECT_FALSE(browser.clicks(std::string(kSentinel) + "?").cancelled()) << "the whole address or none";
}

#ifndef _WIN32  // the desk shows what is remembered
TEST_F(Interception, TheRecordOfARedirectedRequestIsFoundUnderItsNewUrl) {
    const std::pair<std::uint32_t, const char*> redirects[] = {
        {301, "http://h.example:80/stored"}, {302, "/stored"}, {303, "stored"}, {307, "//h.example:80/stored"}};
    for (const auto& [status, location] : redirects) {
        auto& form = browser.clicks("http://h.example/form");
        browser.answers(form, status, {{"Location", location}});
        EXPECT_TRUE(form.written.empty()) << location;
        EXPECT_FALSE(desk().remembers("http://h.example/form")) << location;
        EXPECT_TRUE(desk().remembers("http://h.example/stored")) << location << ": without the default port";
        browser.answers(browser.make<Channel>(Request{.url = "http://h.example/stored"}), 404);
        EXPECT_FALSE(desk().remembers("http://h.example/stored")) << location << ": one record";
    }
}
#endif

TEST_F(Interception, EveryTopicOfAResponseIsExamined) {
    for (const char* topic : {"http-on-examine-merged-response", "http-on-examine-cached-response"}) {
        auto& channel = browser.clicks("http://h.example/a.zip");
        browser.answers(channel, 200, kZip, topic);
        EXPECT_TRUE(channel.cancelled()) << topic;
    }
}

class UploadOfVersion : public ::testing::TestWithParam<int> {};

TEST_P(UploadOfVersion, TravelsWithItsTypeAndIsStillThereToBeSent) {
    SettingsTree settings;
    Manager manager;
    settings.set("Extensions", "zip");
    Browser browser({.version = GetParam()});
    browser.startsUp();
    const std::string form = "a=1&b=2";
    const std::string stream =
        "Content-Type: application/x-www-form-urlencoded\r\nContent-Length: 7\r\n\r\n" + form;
    const auto posts = [](Upload upload) {
        return Request{.url = "http://h.example/form.zip", .method = "POST", .upload = std::move(upload)};
    };
    const struct {
        Upload upload;
        json body, type;
        std::uint32_t flags;
        const char* why;
    } rows[] = {
        {{.bytes = stream}, form, "application/x-www-form-urlencoded", 8, "a form"},
        {{.bytes = stream, .oldestSeekable = true},
         form,
         "application/x-www-form-urlencoded",
         8,
         "seekable under the oldest identifier"},
        {{.bytes = form}, form, nullptr, 8, "a stream without header block"},
        {{.bytes = std::string(50'000, 'x')},
         std::string(50'000, 'x'),
         nullptr,
         8,
         "the largest that is captured"},
        {{.bytes = std::string(50'001, 'x')}, nullptr, nullptr, 0x1000008, "one byte more"},
        {{.bytes = form, .claims = 40'000}, form, nullptr, 8, "a stream that promises more than it has"},
        {{.bytes = form, .claims = 3}, "a=1", nullptr, 8, "a stream that has more than it says"},
        {{.bytes = form, .closed = true}, nullptr, nullptr, 8, "a closed stream"},
        {{.bytes = form, .seekable = false}, nullptr, nullptr, 0x1000008, "a stream that is read only once"},
    };
    std::size_t number = 0;
    for (const auto& row : rows) {
        auto& channel = browser.requests(posts(row.upload));
        EXPECT_EQ(channel.upload->upload.position, 0u) << "whole when it is sent: " << row.why;
        if (!row.upload.claims) channel.upload->upload.position = row.upload.bytes.size();  // it was sent
        browser.answers(channel, 200, kZip);
        ASSERT_TRUE(channel.cancelled()) << row.why;
        const json told = manager.received(number++);
        EXPECT_EQ(told["postData"], row.body) << row.why;
        EXPECT_EQ(told["extraData"][4], row.type) << row.why;
        EXPECT_EQ(told["flags"], row.flags) << row.why;
    }
    EXPECT_EQ(browser.unbalanced(), "");
    EXPECT_TRUE(browser.violations().empty());
}

INSTANTIATE_TEST_SUITE_P(BothGenerations, UploadOfVersion, ::testing::Values(6, 16, 17, 52));

}  // namespace
}  // namespace zab::testbed
