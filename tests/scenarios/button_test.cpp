// Buttons that are really seen and clicked: the one over a page's media, and the popup of selected links.
#include "browser/base_window.h"
#include "scenarios/scenario.h"
#ifndef _WIN32
#include "companions/button_library/choice_record.h"
#include "desk/desk.h"
#endif

namespace zab::testbed {
namespace {

using Labels = std::vector<std::u16string>;

class Buttons : public ScreenScenario {
  protected:
    Buttons() { browser.clicks("http://site.example/"); }  // until a request comes, the module has no lists
};

TEST_F(Buttons, APageOfFiveEntriesHasAButtonThatFollowsItAndHandsThemOver) {
    auto& page = opensPage(17);
    browser.selectsTab(u"17");
    page.boxes[u"appcontent"] = {10, 40, 400, 300};
    browser.offers(page, "e.mp3", "audio/mpeg", "6291456");
    browser.offers(page, "d.flv", "video/x-flv", "7340032");
    browser.offers(page, "c.webm", "video/webm", "83886080");
    browser.offers(page, "b.mp4");
    browser.offers(page, "1080p.mp4", "video/mp4", "734003200");
    const auto over = button();
    ASSERT_NE(over, 0u);
    EXPECT_EQ(window->buttons(true).size(), 1u) << "one for all entries";
    EXPECT_EQ(captionOf(over), u"Download with ZAB");
    const auto scrollBar = scrollBarWidth();
    EXPECT_EQ(areaOf(over).right, 10 + 400 - 2 - scrollBar);
    EXPECT_EQ(areaOf(over).top, 40 + 2);

    page.boxes[u"appcontent"] = {10, 90, 300, 250};
    browser.fires(u"scroll", page);
    EXPECT_TRUE(serves([&] { return areaOf(over).top == 92; })) << "scrolled";
    EXPECT_EQ(areaOf(over).right, 10 + 300 - 2 - scrollBar);
    page.boxes.clear();
    browser.fires(u"resize", page);
    EXPECT_FALSE(serves([&] { return areaOf(over).top != 92; }, std::chrono::milliseconds(200)))
        << "a place that cannot be had leaves it where it was";

    EXPECT_EQ(meanwhile([&] { return opensMenu(over); }),
              (Labels{u"1080p.mp4, 700.0 MB", u"b.mp4, 90.0 MB", u"c.webm, 80.0 MB", u"d.flv, 7.0 MB",
                      u"e.mp3, 6.0 MB", u"Download all"}));
    EXPECT_TRUE(meanwhile([] { return choosesItem(1); }));
    auto told = received(0);
    EXPECT_EQ(json({told["url"], told["flags"], told["extraData"][7]}),
              json({"http://films.example/b.mp4", 0, page.url}));
    meanwhile([&] { return opensMenu(over); });
    EXPECT_TRUE(meanwhile([] { return choosesItem(5); }));
    EXPECT_EQ(received(1)["url"], "http://films.example/1080p.mp4") << "all of them, in the menu's order";
    EXPECT_EQ(received(5)["url"], "http://films.example/e.mp3");

    browser.selectsTab(u"18");
    EXPECT_EQ(button(), 0u) << "another tab is in front";
    browser.selectsTab(u"17");
    EXPECT_EQ(button(), over);
    browser.fires(u"unload", page);
    EXPECT_TRUE(serves([&] { return !isWindow(over); }));
    EXPECT_EQ(page.domWindow.target.listeners.size() + page.listeners.size(), 0u);
}

TEST_F(Buttons, AreMadeOncePerPageAndOnlyWhereTheyCanBe) {
    auto& page = opensPage(17);
    settings.set("ExePath", SettingsTree::kProgram);
    browser.offers(page, "a.mp4");
    EXPECT_TRUE(window->buttons(true).empty()) << "no library";
    settings.setCompanions();
    browser.offers(page, "b.mp4");
    const auto over = button();
    ASSERT_NE(over, 0u);
    EXPECT_EQ(meanwhile([&] { return opensMenu(over); }).size(), 3u) << "what came before was kept";
    meanwhile([&] { return leavesMenu(over), true; });
    closesButton(over);
    EXPECT_TRUE(serves([&] { return !isWindow(over); }));
    browser.offers(page, "c.mp4");
    EXPECT_TRUE(window->buttons(true).empty()) << "the user closed it: the page gets no other";
    browser.unloads(u"17");

    auto& elsewhere = opensPage(18);
    elsewhere.nativeWindow = 0;
    elsewhere.domWindow.docShell.nativeWindow = window->handle();
    browser.selectsTab(u"19");
    browser.offers(elsewhere, "a.mp4");
    EXPECT_EQ(window->buttons(true).size(), 1u) << "the document's own window names it";
    EXPECT_EQ(button(), 0u) << "in a tab behind";
    browser.unloads(u"18");
    EXPECT_TRUE(serves([&] { return window->buttons(true).empty(); })) << "by the export as well";
}

TEST_F(Buttons, SelectedLinksAreChosenFromAPopupThatTheNextPressCloses) {
    browser.cookies = {{"session", "1", "files.example"}};
    auto& page = opensPage(17);
    drags(page, u"http://files.example/a%20b.zip\nmailto:x@h\nftp://h.example/\nhttp://files.example/c.iso");
    const auto popup = button();
    ASSERT_NE(popup, 0u);
    EXPECT_EQ(captionOf(popup), u"Download selected files");
    EXPECT_EQ(areaOf(popup).left, 199);
    EXPECT_EQ(areaOf(popup).top, 149);
    EXPECT_EQ(meanwhile([&] { return opensMenu(popup); }),
              (Labels{u"a b.zip", u"ftp://h.example/", u"c.iso", u"Download all"}));
    EXPECT_TRUE(meanwhile([] { return choosesItem(2); }));
    auto told = received(0);
    EXPECT_EQ(json({told["url"], told["flags"], told["referrer"], told["cookies"], told["extraData"][7]}),
              json({"http://files.example/c.iso", 0, page.url, "session=1", page.url}));

    meanwhile([&] { return opensMenu(popup); });
    EXPECT_TRUE(meanwhile([] { return choosesItem(3); }));
    // All of them, in their order.
    EXPECT_EQ(json({received(1)["url"], received(2)["url"], received(3)["url"]}),
              json({"http://files.example/a%20b.zip", "ftp://h.example/", "http://files.example/c.iso"}));

    browser.mouse(u"mousedown", &page);
    EXPECT_FALSE(isWindow(popup));
}

#ifndef _WIN32  // real windows show nothing more
TEST_F(Buttons, APageMayGoWhileItsButtonIsMadeOrMoved) {
    const struct {
        const char* during;
        bool moved;  // else made
    } rows[] = {{"helper5.74", false}, {"helper5.69", false}, {"helper5.19", false},
                {"helper5.73", false}, {"helper5.17", true},  {"helper5.73", true}};
    for (const auto& row : rows) {
        auto& page = opensPage(17);
        const auto goes = [&] { browser.onNext(row.during, [&] { browser.unloads(u"17"); }); };
        if (!row.moved) goes();
        browser.offers(page, "a.mp4");
        if (row.moved) goes();
        browser.fires(u"scroll", page);
        EXPECT_TRUE(serves([&] { return window->buttons(true).empty(); })) << row.during << row.moved;
        EXPECT_EQ(browser.unbalanced(), "") << row.during << row.moved;
    }
}

TEST_F(Buttons, AChoiceIsATransferPerMessageAndOutlivesItsWindow) {
    auto& page = opensPage(17);
    drags(page, u"http://h.example/a\nhttp://h.example/b\nhttp://h.example/c");
    opensMenu(button());
    EXPECT_TRUE(choosesItem(3));
    for (std::size_t served = 1; !desk().posted.empty(); ++served) {
        desk().posted.front()();
        desk().posted.pop_front();
        ASSERT_LE(manager.count(), served) << "the thread is free between two transfers";
        if (manager.count() == 1) window.reset();
    }
    ASSERT_EQ(manager.count(), 3u);
    EXPECT_EQ(manager.received(2)["url"], "http://h.example/c") << "in their order";
    EXPECT_FALSE(messageBoxIsOpen());
    browser.unloads(u"17");
}

TEST_F(Buttons, AfterThePopupNameThePageAgain) {
    const struct {
        const char* how;
        std::function<void(NativeWindow popup, Page& page)> closes;
        std::size_t told;
    } rows[] = {
        {"the next press", [&](auto, auto& page) { browser.mouse(u"mousedown", &page); }, 1},
        {"the user", [](auto popup, auto&) { closesButton(popup); }, 2},
        {"the end of its page", [&](auto, auto&) { browser.unloads(u"17"); }, 2},
    };
    auto& page = opensPage(17);
    browser.selectsTab(u"17");
    browser.offers(page);
    for (const auto& row : rows) {
        drags(page, u"http://h.example/old.zip\nhttp://h.example/old2.zip");
        const auto popup = window->buttons(true).back();
        const auto controller = desk().windows[popup].controller;
        row.closes(popup, page);
        desk().servesMessages();
        EXPECT_FALSE(isWindow(popup)) << row.how;
        desk().copies(controller, choiceRecord(u"!ALL!", 17, u""));
        desk().servesMessages();
        EXPECT_EQ(manager.count(), row.told) << row.how;
    }
    EXPECT_EQ(manager.received(1)["url"], "http://films.example/a.mp4");
}

TEST_F(Buttons, APopupOpensAsTheUserWantsIt) {
    auto& page = opensPage(17);
    const struct {
        std::uint32_t mode;
        std::u16string_view links;
        std::size_t opens;
    } rows[] = {{1, u"http://h/page", 1},
                {1, u"mailto:x@h", 0},
                {2, u"http://h/a.zip", 0},
                {3, u"http://h/page\nhttp://h/a.ZIP", 1},
                {3, u"http://h/a.iso", 0}};
    settings.set("DwnlSelPanel\\zip\\any", 1u);
    for (const auto& row : rows) {
        settings.set("DwnlSelPanel\\PanelMode", row.mode);
        drags(page, std::u16string(row.links));
        EXPECT_EQ(window->buttons().size(), row.opens) << row.mode;
    }
    browser.selectsTab(u"18");
    EXPECT_TRUE(window->buttons(true).empty()) << "a tab that comes forward closes it";
    browser.offers(page);
    EXPECT_EQ(window->buttons(true).size(), 1u);
    browser.shutsDown();
    EXPECT_TRUE(serves([&] { return window->buttons(true).empty(); })) << "so does the end of the browser";
}
#endif

}  // namespace
}  // namespace zab::testbed
