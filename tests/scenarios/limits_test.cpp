// What no ordinary server or page sends: the module lives through it, gives everything back, and keeps no more
// memory than it did before.
#include "desk/desk.h"
#include "scenarios/recorded.h"
#include "scenarios/scenario.h"

namespace zab::testbed {
namespace {

TEST(Limits, UnusualExchangesLeaveNothingBehind) {
    const std::string mebibyte(1 << 20, 'x'), url = "http://h.example/a.zip";
    const Headers nameless = {{"", "value"}, {"", ""}};
    Headers many(10'000, {"X-Filler", "value"});
    many.emplace_back("Content-Disposition", "attachment; filename=many.zip");
    const struct {
        const char* why;
        Request request;
        Headers answer;
        bool taken;
    } rows[] = {
        {"headers without a value",
         {.url = url, .headers = {{"Cookie", ""}, {"Referer", ""}, {"Authorization", ""}}},
         {{"Content-Type", ""}, {"Content-Disposition", ""}, {"Content-Length", ""}, {"Content-Range", ""}},
         true},
        {"headers without a name", {.url = "http://h.example/page"}, nameless, false},
        {"headers of 1 MiB",
         {.url = url, .headers = {{"Cookie", mebibyte}, {"Authorization", "Basic " + mebibyte}}},
         {{"Content-Type", mebibyte}, {"Content-Disposition", "attachment; filename=\"" + mebibyte + ".zip\""}},
         true},
        {"a URL of 1 MiB", {.url = "http://h.example/" + mebibyte + ".zip"}, kZip, true},
        {"10,000 headers", {.url = "http://h.example/get", .headers = many}, many, true},
        {"no URL", {.url = ""}, kZip, false},
        {"a stream that promises all there can be",
         {.url = url, .method = "POST", .upload = Upload{.bytes = "xxx", .claims = ~0ull}},
         kZip,
         true},
    };
    SettingsTree settings;
    settings.set("Extensions", "zip");
    SoundBrowser browser;
    HookedSystem system(browser);
    browser.startsUp();
    const auto plays = [&](Request request, const Headers& answer) {
        auto& page = browser.opensPage("http://h.example/", u"", 7);
        request.page = &page;
        auto& channel = browser.requests(std::move(request));
        browser.answers(channel, 200, answer);
        browser.finishes(channel);
        browser.unloads(u"7");  // takes the record of the request away
        browser.dropsPage(page);
        return channel.cancelled();
    };
    for (const auto& row : rows) {
        std::size_t keptAtFirst = 0;
        for (int round = 0; round < 3; ++round) {
            EXPECT_EQ(plays(row.request, row.answer), row.taken) << row.why;
            EXPECT_EQ(system.takesTold().size(), row.taken ? 1u : 0u) << row.why;
            // What is remembered of the newest hand-overs is then of ordinary size.
            for (int i = 0; i < 64; ++i) plays({.url = "http://h.example/ordinary/file.zip"}, kZip);
            plays({.url = "http://h.example/a.png", .loadFlags = kEmbedded}, {});
            system.takesTold();
            browser.takesDebugLines();
            browser.sweeps();
            if (round == 1) keptAtFirst = heapBytes();
        }
        EXPECT_EQ(heapBytes(), keptAtFirst) << row.why;
        EXPECT_EQ(browser.unbalanced() + system.unbalanced(), "") << row.why;
    }
}

}  // namespace
}  // namespace zab::testbed
