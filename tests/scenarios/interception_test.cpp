// Downloads through the module: caught, handed over and cancelled, or left with the browser.
#include "desk/desk.h"
#include "scenarios/scenario.h"

namespace zab::testbed {
namespace {

constexpr const char* kSentinel = "http://www.mozilla.org/thisrequestistransferredtozab.stop";

/// A desktop with an installed download manager and a browser that has started up.
class Interception : public Scenario {
  protected:
    Interception() {
        settings.set("Extensions", "zip rar 7z exe");
        browser.startsUp();
    }
};

TEST_F(Interception, ATypicalDownloadTravelsWithWhatIsKnownOfIt) {
    auto& page = browser.opensPage("http://site.example/page.html", u"Archives");
    auto& channel = browser.requests({.url = "http://site.example/get?id=7#part",
                                      .headers = {{"Authorization", "Basic dTpw"}},
                                      .page = &page});
    browser.answers(channel, 200,
                    {{"Content-Disposition", "attachment; filename=\"a b.zip\""},
                     {"Content-Type", "application/octet-stream; charset=x"},
                     {"Content-Length", "5000"}});
    EXPECT_EQ(channel.cancels, std::vector<nsresult>{kTakenOverStatus});
    const json told = manager.received(0), &extra = told["extraData"];
    EXPECT_EQ(json({told["url"], told["user"], told["password"], told["fileName"], told["flags"]}),
              json({"http://site.example/get?id=7", "u", "p", "a b.zip", 0x1008}));
    EXPECT_EQ(json({extra[2], extra[3], extra[5], extra[6], extra[7]}),
              json({"Archives", "EXE", "application/octet-stream", "5000", page.url}))
        << "what the type says outweighs the name";
}

TEST_F(Interception, TheKeysOfThePressForceALinkWhenTheMouseIsChecked) {
    settings.set("SpecialKeys\\UseKeyToForce", 1u).set("SpecialKeys\\CtrlF", 1u);
    settings.set("SpecialKeys\\CheckMouse", 1u);
    const HeldKeys control({kControl});
    EXPECT_FALSE(browser.clicks("http://h.example/page").cancelled()) << "the key came after the press";
    browser.mouse(u"mousedown");
    EXPECT_TRUE(browser.clicks("http://h.example/page").cancelled());
    browser.requests({.url = "http://h.example/form", .method = "POST", .upload = Upload{.bytes = "a=1"}});
    EXPECT_EQ(manager.received(1)["postData"], "a=1") << "with what is sent";
}

TEST_F(Interception, AnFtpRedirectIsTakenAndItsRequestDiesBeforeItIsSent) {
    auto& channel = browser.clicks("http://h.example/moved");
    browser.answers(channel, 302, {{"Location", "ftp://h.example/pub/archive.zip"}});
    EXPECT_EQ(channel.written, (Headers{{"Location", kSentinel}}));
    EXPECT_FALSE(channel.cancelled());
    const json told = manager.received(0);
    EXPECT_EQ(json({told["url"], told["flags"], told["referrer"]}),
              json({"ftp://h.example/pub/archive.zip", 0x804, nullptr}));
    EXPECT_EQ(browser.clicks(kSentinel).cancels, std::vector<nsresult>{kTakenOverStatus});
    EXPECT_FALSE(browser.clicks(std::string(kSentinel) + "?").cancelled()) << "the whole address or none";
}

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

TEST_F(Interception, EveryTopicOfAResponseIsExamined) {
    for (const char* topic : {"http-on-examine-merged-response", "http-on-examine-cached-response"}) {
        auto& channel = browser.clicks("http://h.example/a.zip");
        browser.answers(channel, 200, kZip, topic);
        EXPECT_TRUE(channel.cancelled()) << topic;
    }
}

class UploadOfVersion : public ::testing::TestWithParam<int> {};

TEST_P(UploadOfVersion, TravelsWithItsTypeAndIsStillThereToBeSent) {
    Installation desktop({.version = GetParam()});
    auto& [settings, manager, browser] = desktop;
    settings.set("Extensions", "zip");
    browser.startsUp();
    const std::string form = "a=1&b=2", formType = "application/x-www-form-urlencoded";
    const std::string stream = "Content-Type: " + formType + "\r\nContent-Length: 7\r\n\r\n" + form;
    const std::string largest(50'000, 'x');
    constexpr std::uint32_t kCaptured = 8, kNotCaptured = 0x1000008;
    const struct {
        Upload upload;
        json body, type;
        std::uint32_t flags;
        const char* why;
    } rows[] = {
        {{.bytes = stream}, form, formType, kCaptured, "a form"},
        {{.bytes = stream, .oldestSeekable = true}, form, formType, kCaptured, "by the oldest identifier"},
        {{.bytes = form}, form, nullptr, kCaptured, "a stream without header block"},
        {{.bytes = largest}, largest, nullptr, kCaptured, "the largest that is captured"},
        {{.bytes = largest + "x"}, nullptr, nullptr, kNotCaptured, "one byte more"},
        {{.bytes = form, .claims = 40'000}, form, nullptr, kCaptured, "promises more than it has"},
        {{.bytes = form, .claims = 3}, "a=1", nullptr, kCaptured, "has more than it says"},
        {{.bytes = form, .closed = true}, nullptr, nullptr, kCaptured, "a closed stream"},
        {{.bytes = form, .seekable = false}, nullptr, nullptr, kNotCaptured, "is read only once"},
    };
    for (std::size_t i = 0; const auto& row : rows) {
        auto& channel =
            browser.requests({.url = "http://h.example/form.zip", .method = "POST", .upload = row.upload});
        EXPECT_EQ(channel.upload->upload.position, 0u) << "whole when it is sent: " << row.why;
        if (!row.upload.claims) channel.upload->upload.position = row.upload.bytes.size();  // it was sent
        browser.answers(channel, 200, kZip);
        ASSERT_TRUE(channel.cancelled()) << row.why;
        const json told = manager.received(i++);
        EXPECT_EQ(told["postData"], row.body) << row.why;
        EXPECT_EQ(told["extraData"][4], row.type) << row.why;
        EXPECT_EQ(told["flags"], row.flags) << row.why;
    }
}

INSTANTIATE_TEST_SUITE_P(BothGenerations, UploadOfVersion, ::testing::Values(6, 16, 17, 52));

}  // namespace
}  // namespace zab::testbed
