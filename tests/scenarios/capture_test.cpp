// Bodies that describe media: what the module reads of them becomes the entries of their page.
#include <gtest/gtest.h>

#include "browser/browser.h"
#include "browser/desktop.h"
#include "browser/process_view.h"

namespace zab::testbed {
namespace {

class Capture : public ::testing::Test {
  protected:
    Capture() { browser.startsUp(); }
    ~Capture() override {
        EXPECT_EQ(browser.unbalanced(), "");
        EXPECT_EQ(browser.violations(), std::vector<std::string>{});
    }

    SettingsTree settings;
    Browser browser{{.debuggerPresent = false}};
};

TEST_F(Capture, AnEntryLivesAsLongAsItsPage) {
    // Of a length that a heap gives a block of its own: so it is seen from outside.
    const std::string name(20'000, 'v');
    const std::string body = "#EXTM3U\n#EXT-X-STREAM-INF:BANDWIDTH=1\n" + name + ".m3u8\n";
    const auto entries = [] { return longTextsThatBeginWith("hlstozab://http://h.example/vvv"); };
    auto& page = browser.opensPage("http://site.example/");
    auto& channel = browser.requests({.url = "http://h.example/a.m3u8", .loadFlags = kEmbedded, .page = &page});
    browser.answers(channel, 200, {{"Content-Type", "application/x-mpegURL"}});
    ASSERT_EQ(channel.listeners.size(), 1u);
    browser.receives(channel, body);
    EXPECT_EQ(entries(), 0u) << "its length is not known";
    browser.finishes(channel);
    EXPECT_EQ(entries(), 1u);
    browser.mouse(u"unload", &page);
    EXPECT_EQ(entries(), 0u);
}

}  // namespace
}  // namespace zab::testbed
