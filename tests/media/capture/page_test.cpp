// Responses of a browser's pages, natively: whose media they are, when that is asked, and what becomes of it
// when pages go away meanwhile.
#include "companions/button_library/choice_record.h"
#include "desk/desk.h"
#include "scenarios/scenario.h"

namespace zab::testbed {
namespace {

using nlohmann::json;

const Headers kHls = {{"Content-Type", "application/x-mpegURL"}};
constexpr const char* kPlaylist = "http://h.example/d/list.m3u8";
constexpr const char* kMaster =
    "#EXT-X-MEDIA:TYPE=AUDIO,GROUP-ID=\"g\",URI=\"a.m3u8\"\n"
    "#EXT-X-STREAM-INF:AUDIO=\"g\"\nhd.m3u8\n";
constexpr const char* kFilm = "hls2tozab://http://h.example/d/hd.m3u8";

class CapturePages : public Scenario {
  protected:
    CapturePages() {
        settings.setCompanions();
        desk().dataFile = "youtube.pairing=2\nhls.asis=asis.example";
        browser.startsUp();
        page = &browser.opensPage("http://site.example/", u"S\u00E4tze", 17);
        page->nativeWindow = window.handle();
        browser.selectsTab(u"17");
    }
    ~CapturePages() override {
        browser.unloads(u"17");
        desk().dataFile.clear();
    }

    Channel& answers(const std::string& url, const Headers& headers, std::uint32_t loadFlags = kEmbedded) {
        auto& channel = browser.requests({.url = url,
                                          .headers = {{"Referer", "http://r.example/"},
                                                      {"User-Agent", "Agent"},
                                                      {"Cookie", "sent=1"},
                                                      {"Authorization", "Basic dTpw"}},
                                          .loadFlags = loadFlags,
                                          .page = loadFlags == kEmbedded ? page : nullptr});
        browser.faults().none();  // what is counted from now on is the capture's
        browser.answers(channel, 200, headers);
        channel.request.page = page;  // a top-level load has become a page
        return channel;
    }
    Channel& asksForPlaylist(std::uint32_t loadFlags = kEmbedded) {
        return answers(kPlaylist, kHls, loadFlags);
    }
    void ends(Channel& channel, std::string_view body) {
        browser.receives(channel, body);
        browser.finishes(channel);
    }
    void getsFile(const std::string& name, const char* length = "5000") {
        answers("http://h.example/" + name, {{"Content-Length", length}});
    }
    /// What is known of the page's media, the newest first, as they would be handed over.
    std::vector<json> media() {
        const PassedText id(browser.runtime(), u"17");
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
    /// What the window's buttons offer.
    std::vector<std::u16string> offers() {
        desk().servesMessages();
        std::vector<std::u16string> labels;
        for (const auto button : window.buttons(true))
            for (const auto& label : desk().windows[button].labels) labels.push_back(label);
        return labels;
    }

    TopWindow window;
    Page* page = nullptr;
};

TEST_F(CapturePages, AnEntryAsksAsItsPageDid) {
    answers("http://h.example/get",
            {{"Content-Type", "video/x-flv"}, {"Content-Disposition", "attachment; filename=a.flv"}});
    const auto all = media();
    ASSERT_EQ(all.size(), 1u);
    EXPECT_EQ(all[0]["cookies"], "sent=1") << "the browser itself has none";
    EXPECT_EQ(all[0]["extraData"][0], "Agent");
    EXPECT_EQ(all[0]["extraData"][2], "S\xE4tze");
    EXPECT_EQ(all[0]["extraData"][17], "a.flv");
    browser.unloads(u"17");
    browser.cookies = {{"jar", "1", "h.example"}};
    // A load that became a page is known among what that page asked for.
    auto& other = browser.opensPage("http://site.example/", u"", 18);
    other.nativeWindow = window.handle();
    for (Page* const to : {&other, page, page}) {
        auto& channel = asksForPlaylist(kTopLevelLoad);
        channel.request.page = to;
        ends(channel, kMaster);
    }
    browser.unloads(u"18");
    ASSERT_EQ(offers().size(), 1u);
    const auto controller = desk().windows[window.buttons(true)[0]].controller;
    const auto chooses = [&] {
        desk().told.clear();
        desk().copies(controller, choiceRecord(u"http://h.example/d/list.m3u8", 17, u"http://site.example/"));
        desk().servesMessages();
        return manager.received(0);
    };
    const json told = chooses();
    EXPECT_EQ(told["referrer"], "http://r.example/");
    EXPECT_EQ(told["cookies"], "jar=1");
    EXPECT_EQ(told["user"], "u");
    EXPECT_EQ(told["extraData"][0], "Agent");
    EXPECT_EQ(told["extraData"][7], "http://site.example/");
    EXPECT_EQ(told["extraData"][17], "hd") << "described as its first entry";
    page->attributes[u"zabmzcc-ext-docid"] = u"19";
    browser.mouse(u"unload", page);
    page->attributes[u"zabmzcc-ext-docid"] = u"17";
    getsFile("b.mp4");
    EXPECT_EQ(chooses(), nullptr) << "known by its object too";
}

TEST_F(CapturePages, LearnFromWhatOffersNothingItself) {
    ends(asksForPlaylist(), kMaster);
    EXPECT_EQ(offers(), std::vector<std::u16string>{u"hd, TS"});
    ends(answers("http://h.example/d/hd.m3u8", kHls), "#EXT-X-VERSION:3\n#EXTINF:9\n1.ts\n#EXT-X-ENDLIST\n");
    EXPECT_EQ(offers(), std::vector<std::u16string>{u"hd, TS, 9 sec"});
    ends(answers("http://asis.example/l.m3u8", kHls), "#EXT-X-STREAM-INF:X=1\nv.m3u8\n");
    EXPECT_EQ(newest(), "hlstozab://v.m3u8") << "the data file names the host";
    answers("http://g.googlevideo.com/videoplayback?id=1&itag=22", {});
    EXPECT_EQ(newest(), "yta3tozab://http://g.googlevideo.com/videoplayback?id=1&itag=22");
}

TEST_F(CapturePages, AreAskedForOnceAndInTime) {
    for (const std::uint32_t loadFlags : {kEmbedded, kTopLevelLoad}) {
        auto& channel = asksForPlaylist(loadFlags);
        const auto count = [&](const char* operation) { return browser.faults().countOf(operation); };
        const bool isInside = loadFlags == kEmbedded;
        EXPECT_EQ(count("helper5.70"), isInside ? 1u : 0u) << "a top-level load becomes a page only later";
        EXPECT_EQ(channel.references(), isInside ? 0 : 1) << "held as long as it is to be asked";
        ends(channel, kMaster);
        EXPECT_EQ(newest(), kFilm);
        EXPECT_EQ(offers().size(), 1u);
        for (const char* operation : {"helper5.70", "helper5.71", "helper5.72", "helper11.7"})
            EXPECT_EQ(count(operation), 1u) << operation;
        browser.unloads(u"17");
    }
    for (const std::string without :
         {"helper5.70", "helper11.7", "service @zab/mozilla_cc_helper5;1", "a document", "a number"}) {
        auto& channel = asksForPlaylist(kTopLevelLoad);
        browser.faults().failAll(without);
        if (without == "a document") channel.request.page = nullptr;
        if (without == "a number") page->attributes.clear();
        ends(channel, kMaster);
        EXPECT_LE(browser.faults().countOf("helper5.70"), 1u) << without;
        for (const char* operation : {"helper5.71", "helper5.72"})
            EXPECT_EQ(browser.faults().countOf(operation), 0u) << "no page without " << without;
        EXPECT_EQ(newest(), "") << without;
        EXPECT_TRUE(offers().empty()) << without;
    }
}

// Every call of the browser may run its scripts, and these may do what they like.
TEST_F(CapturePages, ThatWentAwayGetNoEntries) {
    auto& other = browser.opensPage("http://site.example/", u"", 18);
    const struct {
        const char*
            steps;  // b: the body comes; o: the other page ends; e, x: this one does, by event or export
        std::uint32_t loadFlags;
        const char* during;  // a call of the browser, in which this one ends
        bool offers;
        const char* why;
    } rows[] = {
        {"bo", kEmbedded, "", true, "another page's end"}, {"be", kEmbedded, "", false, "by event"},
        {"bx", kEmbedded, "", false, "by export"},         {"xeb", kEmbedded, "", false, "before the body"},
        {"xb", kTopLevelLoad, "", true, "not yet of it"},  {"b", kEmbedded, "helper5.71", false, "meanwhile"},
        {"b", kEmbedded, "helper5.72", false, "meanwhile"}};
    for (const auto& row : rows) {
        auto& channel = asksForPlaylist(row.loadFlags);
        for (const char step : std::string_view(row.steps)) {
            if (step == 'b') browser.receives(channel, kMaster);
            if (step == 'o') browser.mouse(u"unload", &other);
            if (step == 'e') browser.mouse(u"unload", page);
            if (step == 'x') browser.unloads(u"17");
        }
        if (*row.during != '\0') browser.onNext(row.during, [&] { browser.unloads(u"17"); });
        browser.finishes(channel);
        EXPECT_EQ(newest(), row.offers ? kFilm : "") << row.why;
        EXPECT_EQ(offers().size(), row.offers ? 1u : 0u) << row.why;
        browser.unloads(u"17");
        EXPECT_EQ(newest(), "") << "its list goes with the page";
    }
    const std::string length = std::to_string(std::string_view(kMaster).size());
    auto& channel = answers(kPlaylist, {{"Content-Type", "application/x-mpegURL"}, {"Content-Length", length}});
    browser.onNext("helper5.72", [&] { browser.finishes(channel); });
    browser.receives(channel, kMaster, 10);
    EXPECT_TRUE(channel.listeners.empty()) << "given up by the browser while its body is read";
    EXPECT_EQ(media().size(), 1u);
}

TEST_F(CapturePages, ShowWhatTheUserSet) {
    settings.set("DwnlPanel\\minsize\\mp3", 10u).set("ZABBI\\Firefox\\DwnlPanel\\FLV", 1u);
    settings.set("ZABBI\\Firefox\\DwnlPanel\\DonlCaptWP", 1u);
    desk().listsLocked = true;
    getsFile("locked.flv");
    desk().listsLocked = false;
    EXPECT_EQ(newest(), "") << "lost to others that hold the lists";
    getsFile("a.mp3", "9");
    EXPECT_EQ(newest(), "") << "below the least size of its type";
    getsFile("a.mp3", "10");
    EXPECT_EQ(newest(), "http://h.example/a.mp3") << "captured without a panel";
    EXPECT_EQ(offers().size(), 0u);
    ends(answers("http://h.example/a.pls", {{"Content-Type", "audio/x-scpls"}}), "ftp://h/x.doc ftp://h/x.flv");
    EXPECT_EQ(media().size(), 2u) << "a type that nobody calls media is not even kept";
    EXPECT_EQ(offers().size(), 1u);
    ends(answers("http://h.example/s/l.m3u8", kHls), "#EXT-X-VERSION:3\n#EXTINF:9\n1.mp3\n");
    getsFile("s/2.mp3");
    EXPECT_EQ(newest(), "hlstozab://http://h.example/s/l.m3u8") << "a segment is no file";
}

}  // namespace
}  // namespace zab::testbed
