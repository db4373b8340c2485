// Buttons that are really seen and clicked: the one over a page's media, and the popup of selected links.
#include <gtest/gtest.h>

#include "browser/hands.h"
#include "scenarios/scenario.h"

namespace zab::testbed {
namespace {

using Labels = std::vector<std::u16string>;

class Buttons : public ::testing::Test {
  protected:
    Buttons() {
        settings.setCompanions();
        browser.startsUp();
        browser.clicks("http://site.example/page.html");
    }
    ~Buttons() override {
        EXPECT_EQ(browser.unbalanced(), "");
        EXPECT_EQ(browser.violations(), std::vector<std::string>{});
    }

    Page& opensPage(std::uint64_t id) {
        auto& page = browser.opensPage("http://site.example/page.html", u"Page", id);
        page.nativeWindow = window.handle();
        return page;
    }
    nlohmann::json received(std::size_t number) {
        return meanwhile([&, number] { return manager.received(number); });
    }
    /// The user presses, drags and releases over a part of the page that holds links.
    void drags(Page& page, std::u16string_view links, POINT to) {
        browser.mouse(u"mousedown", &page);
        ClientToScreen(reinterpret_cast<HWND>(window.handle()), &to);
        SetCursorPos(to.x, to.y);
        browser.mouse(u"mouseup", &page, std::u16string(links));
    }
    /// The only visible button; 0: none, or several.
    NativeWindow button() const {
        const auto visible = window.buttons();
        return visible.size() == 1 ? visible.front() : 0;
    }

    SettingsTree settings;
    TopWindow window;
    Manager manager;
    Browser browser;
};

TEST_F(Buttons, SelectedLinksAreChosenFromAPopupThatTheNextPressCloses) {
    browser.cookies = {{"session", "1", "files.example"}};
    auto& page = opensPage(17);
    drags(page, u"http://files.example/a%20b.zip\nmailto:x@h\nftp://h.example/\nhttp://files.example/c.iso",
          {200, 150});
    const auto popup = button();
    ASSERT_NE(popup, 0u);
    EXPECT_EQ(captionOf(popup), u"Download selected files");
    EXPECT_EQ(areaOf(popup).left, 199);
    EXPECT_EQ(areaOf(popup).top, 149);
    EXPECT_EQ(meanwhile([&] { return opensMenu(popup); }),
              (Labels{u"a b.zip", u"ftp://h.example/", u"c.iso", u"Download all"}));
    EXPECT_TRUE(meanwhile([] { return choosesItem(2); }));
    auto told = received(0);
    EXPECT_EQ(told["url"], "http://files.example/c.iso");
    EXPECT_EQ(told["flags"], 0);
    EXPECT_EQ(told["referrer"], page.url);
    EXPECT_EQ(told["cookies"], "session=1");
    EXPECT_EQ(told["extraData"][7], page.url);

    meanwhile([&] { return opensMenu(popup); });
    EXPECT_TRUE(meanwhile([] { return choosesItem(3); }));
    EXPECT_EQ(received(1)["url"], "http://files.example/a%20b.zip") << "all of them, in their order";
    EXPECT_EQ(received(2)["url"], "ftp://h.example/");
    EXPECT_EQ(received(3)["url"], "http://files.example/c.iso");

    browser.mouse(u"mousedown", &page);
    EXPECT_FALSE(isWindow(popup));
}

TEST_F(Buttons, APopupOpensAsTheUserWantsIt) {
    auto& page = opensPage(17);
    const struct {
        std::uint32_t mode;
        std::u16string_view links;
        bool opens;
        const char* why;
    } rows[] = {
        {1, u"http://h/page", true, "any link"},
        {1, u"mailto:x@h", false, "no link that can be downloaded"},
        {2, u"http://h/a.zip", false, "never"},
        {3, u"http://h/page\nhttp://h/a.ZIP", true, "a named type among others"},
        {3, u"http://h/page\nhttp://h/a.iso", false, "none of the named types"},
    };
    settings.set("DwnlSelPanel\\zip\\any", 1u);
    int x = 100;
    for (const auto& row : rows) {
        settings.set("DwnlSelPanel\\PanelMode", row.mode);
        drags(page, row.links, {x += 5, 100});
        EXPECT_EQ(window.buttons().size(), row.opens ? 1u : 0u) << row.why;
    }
    browser.selectsTab(u"18");
    EXPECT_TRUE(window.buttons(true).empty()) << "a tab that comes forward closes it";
}

}  // namespace
}  // namespace zab::testbed
