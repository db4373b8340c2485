// Responses of a browser's pages, natively: whose media they are, when that is asked, and what becomes of it
// when pages go away meanwhile.
#include <algorithm>

#include "desk/desk.h"
#include "scenarios/scenario.h"

namespace zab::testbed {
namespace {

using nlohmann::json;

constexpr const char* kPlaylist = "http://h.example/d/list.m3u8";
constexpr const char* kMaster =
    "#EXT-X-MEDIA:TYPE=AUDIO,GROUP-ID=\"g\",URI=\"a.m3u8\"\n#EXT-X-STREAM-INF:AUDIO=\"g\"\nhd.m3u8\n";
constexpr const char* kFilm = "hls2tozab://http://h.example/d/hd.m3u8";

class CapturePages : public ::testing::Test {
  protected:
    CapturePages() {
        browser.startsUp();
        page = &browser.opensPage("http://site.example/", u"S\u00E4tze", 17);
        page->nativeWindow = window;
        browser.selectsTab(u"17");
    }
    ~CapturePages() override {
        browser.unloads(u"17");
        EXPECT_EQ(browser.unbalanced(), "");
        EXPECT_EQ(browser.violations(), std::vector<std::string>{});
        EXPECT_EQ(desk().lockHeld, 0);
        desk().windows.clear();
        desk().listsLocked = false;
    }

    Channel& asks(const std::string& url, std::uint32_t loadFlags = kEmbedded) {
        return browser.requests({.url = url,
                                 .headers = {{"Referer", "http://site.example/frame"},
                                             {"User-Agent", "Agent/52"},
                                             {"Cookie", "sent=1"}},
                                 .loadFlags = loadFlags,
                                 .page = page});
    }
    Channel& asksFor(const std::string& url, const char* type, std::uint32_t loadFlags = kEmbedded) {
        auto& channel = asks(url, loadFlags);
        browser.faults().none();  // what is counted from now on is the capture's
        browser.answers(channel, 200, {{"Content-Type", type}});
        EXPECT_EQ(channel.listeners.size(), 1u) << url;
        return channel;
    }
    Channel& asksForPlaylist(std::uint32_t loadFlags = kEmbedded) {
        return asksFor(kPlaylist, "application/x-mpegURL", loadFlags);
    }
    void ends(Channel& channel, std::string_view body) {
        browser.receives(channel, body);
        browser.finishes(channel);
    }
    void getsPlaylist() { ends(asksForPlaylist(), kMaster); }
    void getsFile(const std::string& name, const char* length = "5000") {
        browser.answers(asks("http://h.example/" + name), 200, {{"Content-Length", length}});
    }
    /// What is known of a document's media, the newest first, as they would be handed over.
    std::vector<json> media(std::u16string_view document = u"17") {
        const PassedText id(browser.runtime(), document);
        desk().told.clear();
        browser.intoModule([&] { return browser.module().DownloadLast10FLVwithZAB(id); });
        desk().boxes.clear();
        std::vector<json> told;
        for (std::size_t i = 0; i < manager.count(); ++i) told.push_back(manager.received(i));
        return told;
    }
    std::string newest() {
        const auto all = media();
        return all.empty() ? "" : all.front()["url"].get<std::string>();
    }
    /// The links that the page's visible button offers.
    [[nodiscard]] static std::size_t linksShown() {
        std::size_t links = 0;
        for (const auto& [handle, window] : desk().windows)
            links += window.visible && !window.closes ? window.links.size() : 0;
        return links;
    }

    SettingsTree settings;
    Manager manager;
    WindowHandle window = desk().opensWindow({.rect = {0, 0, 800, 600}});
    Browser browser;
    Page* page = nullptr;
};

TEST_F(CapturePages, AnEntryAsksAsItsPageDid) {
    const struct {
        bool byBody, withJar;
        const char* url;
        const char* cookies;
    } rows[] = {
        {false, false, "http://h.example/a.flv", "sent=1"},
        {false, true, "http://h.example/a.flv", "jar=1"},
        {true, false, kFilm, "sent=1"},
        {true, true, kFilm, "jar=1"},
    };
    for (const auto& row : rows) {
        browser.cookies = {{"other", "1", "other.example"}};
        if (row.withJar) browser.cookies.push_back({"jar", "1", "h.example"});
        row.byBody ? getsPlaylist() : getsFile("a.flv");
        const auto all = media();
        ASSERT_EQ(all.size(), 1u) << row.url;
        const json& told = all.front();
        EXPECT_EQ(told["url"], row.url);
        EXPECT_EQ(told["cookies"], row.cookies) << row.url << ": those of the browser count for more";
        EXPECT_EQ(told["referrer"], "http://site.example/frame");
        EXPECT_EQ(told["extraData"][0], "Agent/52");
        EXPECT_EQ(told["extraData"][2], "S\xE4tze");
        EXPECT_EQ(told["extraData"][7], "http://site.example/");
        browser.unloads(u"17");
    }
}

TEST_F(CapturePages, AreAskedForOnceAndInTime) {
    const auto count = [&](const char* operation) { return browser.faults().countOf(operation); };
    const auto plays = [&](std::uint32_t loadFlags) {
        auto& channel = asksForPlaylist(loadFlags);
        const auto early = count("helper5.70");
        ends(channel, kMaster);
        return std::pair(early, count("helper5.70"));
    };
    EXPECT_EQ(plays(kEmbedded), std::pair(1u, 1u)) << "the page of a load inside it is known at once";
    EXPECT_EQ(newest(), kFilm);
    browser.unloads(u"17");
    EXPECT_EQ(plays(kTopLevelLoad), std::pair(0u, 1u)) << "a top-level load becomes one only later";
    EXPECT_EQ(newest(), kFilm);
    EXPECT_EQ(count("helper5.72"), 1u) << "the address and title of a page";
    EXPECT_EQ(count("helper11.7"), 1u) << "and its number";

    for (const char* operation : {"helper5.70", "helper11.7", "service @zab/mozilla_cc_helper5;1"}) {
        browser.unloads(u"17");
        auto& channel = asksForPlaylist(kTopLevelLoad);
        browser.faults().failAll(operation);
        ends(channel, kMaster);
        EXPECT_EQ(newest(), "") << "no page without " << operation;
        EXPECT_TRUE(browser.faults().reached()) << operation;
        browser.faults().none();
    }
}

TEST_F(CapturePages, ThatWentAwayGetNoEntries) {
    auto& other = browser.opensPage("http://site.example/", u"", 18);
    const struct {
        const char*
            steps;  // b: the body comes; o: the other page ends; e, x: this one does, by event or export
        std::uint32_t loadFlags;
        bool offers;
        const char* why;
    } rows[] = {
        {"bo", kEmbedded, true, "another page's end"},
        {"be", kEmbedded, false, "by event"},
        {"bx", kEmbedded, false, "by export"},
        {"eb", kEmbedded, false, "before the body"},
        {"xeb", kEmbedded, false, "twice"},
        {"xb", kTopLevelLoad, true, "not yet a page of this load"},
    };
    for (const auto& row : rows) {
        auto& channel = asksForPlaylist(row.loadFlags);
        for (const char step : std::string_view(row.steps)) {
            if (step == 'b') browser.receives(channel, kMaster);
            if (step == 'o') browser.mouse(u"unload", &other);
            if (step == 'e') browser.mouse(u"unload", page);
            if (step == 'x') browser.unloads(u"17");
        }
        browser.finishes(channel);
        EXPECT_EQ(newest(), row.offers ? kFilm : "") << row.why;
        browser.unloads(u"17");
        EXPECT_EQ(newest(), "") << "its list goes with the page";
    }
}

// Every call of the browser may run its scripts, and these may do what they like.
TEST_F(CapturePages, MayEndWhileTheBrowserIsAsked) {
    const std::string master = kMaster;
    for (const char* during : {"helper5.71", "helper5.72"}) {
        auto& channel = asksForPlaylist();
        browser.receives(channel, master);
        browser.onNext(during, [&] { browser.unloads(u"17"); });
        browser.finishes(channel);
        EXPECT_EQ(newest(), "") << during;
        EXPECT_EQ(linksShown(), 0u) << during;
    }
    auto& channel = asks(kPlaylist);
    browser.answers(
        channel, 200,
        {{"Content-Type", "application/x-mpegURL"}, {"Content-Length", std::to_string(master.size())}});
    browser.onNext("helper5.72", [&] { browser.finishes(channel); });
    browser.receives(channel, master, 10);
    EXPECT_TRUE(channel.listeners.empty()) << "given up by the browser while its body is read";
    EXPECT_EQ(newest(), kFilm);
    EXPECT_EQ(media().size(), 1u);
}

TEST_F(CapturePages, ShowWhatTheUserSet) {
    settings.set("DwnlPanel\\minsize\\mp3", 10u).set("ZABBI\\Firefox\\DwnlPanel\\FLV", 1u);
    settings.set("ZABBI\\Firefox\\DwnlPanel\\DonlCaptWP", 1u);
    const struct {
        const char* name;
        const char* length;
        std::size_t kept, shown;
        const char* why;
    } rows[] = {
        {"a.flv", "9", 1, 1, "a type that the user set"},
        {"a.mp3", "9", 0, 0, "below the least size of its type"},
        {"a.mp3", "10", 1, 0, "not below it, but captured without a panel"},
    };
    for (const auto& row : rows) {
        getsFile(row.name, row.length);
        EXPECT_EQ(media().size(), row.kept) << row.why;
        EXPECT_EQ(linksShown(), row.shown) << row.why;
        browser.unloads(u"17");
        browser.selectsTab(u"17");
    }
    ends(asksFor("http://h.example/list.pls", "audio/x-scpls"),
         "http://a.example/x.doc http://a.example/x.flv");
    EXPECT_EQ(newest(), "http://a.example/x.flv");
    EXPECT_EQ(media().size(), 1u) << "a type that nobody calls media is not even kept";
}

TEST_F(CapturePages, HaveNoEntriesWhileOthersHoldTheLists) {
    auto& channel = asksForPlaylist();
    browser.receives(channel, kMaster);
    desk().listsLocked = true;
    getsFile("a.flv");
    browser.finishes(channel);
    desk().listsLocked = false;
    EXPECT_EQ(newest(), "");
    EXPECT_EQ(linksShown(), 0u);
    getsPlaylist();
    EXPECT_EQ(newest(), kFilm) << "the page lost an entry, and nothing else";
    EXPECT_EQ(linksShown(), 1u);
}

}  // namespace
}  // namespace zab::testbed
