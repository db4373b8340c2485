// What no ordinary server or page sends: the module lives through it, gives everything back, and keeps no more
// memory than it did before.
#include "desk/desk.h"
#include "scenarios/recorded.h"
#include "scenarios/scenario.h"

namespace zab::testbed {
namespace {

constexpr std::size_t kMebibyte = 1 << 20;

TEST(Limits, UnusualExchangesLeaveNothingBehind) {
    const std::string mebibyte(kMebibyte, 'x');
    Headers manyHeaders(10'000, {"X-Filler", "value"});
    manyHeaders.emplace_back("Content-Disposition", "attachment; filename=many.zip");
    const Headers zip = {{"Content-Type", "application/zip"}};
    const struct {
        Request request;
        Headers answer;
        bool taken;
        const char* why;
    } rows[] = {
        {{.url = "http://h.example/a.zip", .headers = {{"Cookie", ""}, {"Referer", ""}, {"Authorization", ""}}},
         {{"Content-Type", ""}, {"Content-Disposition", ""}, {"Content-Length", ""}, {"Content-Range", ""}},
         true,
         "headers without a value"},
        {{.url = "http://h.example/page"}, {{"", "value"}, {"", ""}}, false, "headers without a name"},
        {{.url = "http://h.example/get"},
         {{"Content-Disposition", "attachment; filename=\"" + mebibyte + ".zip\""}},
         true,
         "a file name of 1 MiB"},
        {{.url = "http://h.example/a.zip",
          .headers = {{"Cookie", mebibyte}, {"Authorization", "Basic " + mebibyte}}},
         {{"Content-Type", mebibyte}, {"X-Filler", mebibyte}},
         true,
         "headers of 1 MiB"},
        {{.url = "http://h.example/" + mebibyte + ".zip"}, zip, true, "a URL of 1 MiB"},
        {{.url = "http://h.example/get", .headers = manyHeaders}, manyHeaders, true, "10,000 headers"},
        {{.url = ""}, zip, false, "no URL"},
        {{.url = "http://h.example/a.zip", .method = "POST", .upload = Upload{.bytes = "xxx", .claims = ~0ull}},
         zip,
         true,
         "a stream that promises all there can be"},
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
    // What is remembered of the newest hand-overs is then of ordinary size.
    const auto playsOrdinaryOnes = [&] {
        for (int i = 0; i < 64; ++i) plays({.url = "http://h.example/ordinary/file.zip"}, zip);
        plays({.url = "http://h.example/a.png", .loadFlags = kEmbedded}, {});
        system.takesTold();
        browser.takesDebugLines();
        browser.sweeps();
    };
    for (const auto& row : rows) {
        std::size_t keptAtFirst = 0;
        for (int round = 0; round < 3; ++round) {
            EXPECT_EQ(plays(row.request, row.answer), row.taken) << row.why;
            EXPECT_EQ(system.takesTold().size(), row.taken ? 1u : 0u) << row.why;
            if (round > 0) playsOrdinaryOnes();
            if (round == 1) keptAtFirst = heapBytes();
        }
        EXPECT_EQ(heapBytes(), keptAtFirst) << row.why;
        EXPECT_EQ(system.unbalanced(), "") << row.why;
        EXPECT_EQ(browser.unbalanced(), "") << row.why;
    }
}

}  // namespace
}  // namespace zab::testbed
