// What the module costs a browser, in what it asks of the system: nobody waits for a setting, a lock or the
// heap because of an image.
#include <map>

#include "desk/desk.h"
#include "scenarios/import_hook.h"
#include "scenarios/scenario.h"

namespace zab::testbed {
namespace {

class Cost : public Scenario {
  protected:
    Cost() {
        settings.set("Extensions", "rar");
        browser.startsUp();
        desk().debuggerWatches = false;
        desk().memoryMayFail = true;
        desk().fails = [this](const std::string& step) { return ++asked[step], false; };
    }
    ~Cost() override {
        desk().fails = [](const std::string&) { return false; };
        desk().memoryMayFail = false;
        desk().debuggerWatches = true;
    }

    /// What the module asks during `act`, as "name count; ".
    template <class Act>
    std::string asksDuring(Act act) {
        asked.clear();
        act();
        std::string text;
        for (const auto& [step, count] : asked)
            text.append(step).append(" ").append(std::to_string(count)) += "; ";
        return text;
    }

    std::map<std::string, int> asked;
};

TEST_F(Cost, WhatAPageEmbedsReachesNeitherSettingNorLockNorHeap) {
    constexpr const char* kListRead = "malloc 1; setting Extensions 1; ";
    const struct {
        const char* url;
        Headers answer;
        const char* asks;
        const char* why;
    } rows[] = {
        {"http://h.example/thumb?file=photo.zip", {{"Content-Type", "image/jpeg"}}, "", "named in its query"},
        {"http://h.example/a.zip", {{"Content-Type", "image/gif"}}, "", "claims to be an archive"},
        {"http://h.example/style?v=7.css", {{"Content-Type", "text/css; charset=utf-8"}}, "", "with a query"},
        {"http://h.example/load.php?a=site.zip",
         {{"Content-Type", "text/javascript"}, {"Content-Encoding", "gzip"}},
         "",
         "made by a program"},
        {"http://h.example/a.css?v=7",
         {{"Content-Type", "text/css"}},
         kListRead,
         "its type is its extension, which a list could name"},
        {"http://h.example/a.zip?x",
         {{"Content-Type", "application/octet-stream"}},
         kListRead,
         "bytes of any kind, with an extension that a list could name"},
    };
    for (const auto& row : rows) {
        const Request request{.url = row.url, .loadFlags = kEmbedded};
        browser.answers(browser.requests(request), 200, row.answer);
        auto& second = browser.requests(request);
        EXPECT_EQ(asksDuring([&] { browser.answers(second, 200, row.answer); }), row.asks) << row.why;
        EXPECT_FALSE(second.cancelled()) << row.why;
    }
}

TEST_F(Cost, APolicyQuestionAsksNobody) {
    const auto url = browser.narrow("http://h.example/a.png");
    auto& page = browser.opensPage("http://h.example/");
    const auto helpersBefore = browser.helperCalls();
    EXPECT_EQ(asksDuring([&] {
                  browser.asksPolicy(kImage, "http://h.example/a.png");
                  browser.intoModule([&] {
                      return static_cast<std::uint32_t>(
                          browser.module().ShouldLoad(kImage, url, url, page.asSupports(), url));
                  });
              }),
              "");
    EXPECT_EQ(browser.helperCalls(), helpersBefore);
}

TEST_F(Cost, ARequestTakesTheLockOnceAndMakesOneRecord) {
    const Request request{.url = "http://h.example/a.png", .loadFlags = kEmbedded};
    browser.requests(request);
    // The record keeps its URL, a node in the list and one in the index.
    EXPECT_EQ(asksDuring([&] { browser.requests(request); }), "lists lock 1; malloc 3; ");
    auto& gone = browser.requests(request);
    EXPECT_EQ(asksDuring([&] { browser.answers(gone, 404); }), "lists lock 1; ") << "which ends it";
}

}  // namespace
}  // namespace zab::testbed
