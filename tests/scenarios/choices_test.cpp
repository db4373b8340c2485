// Choices on their way to the download manager, message by message: what only the desk can stop in between.
#include "companions/button_library/choice_record.h"
#include "desk/desk.h"
#include "scenarios/scenario.h"

namespace zab::testbed {
namespace {

class Choices : public ScreenScenario {
  protected:
    Choices() {
        browser.selectsTab(u"17");
        browser.offers(page);
    }
    ~Choices() override { browser.unloads(u"17"); }

    /// The popup that opens.
    NativeWindow dragsOver(std::u16string links) {
        drags(page, std::move(links));
        return window->buttons(true).back();
    }

    Page& page = opensPage(17);
};

TEST_F(Choices, OfTwoThousandLinksAreATransferPerMessageAndOutliveTheirWindow) {
    std::u16string links;
    for (int i = 0; i < 2000; ++i) links.append(u"http://h.example/").append(1, char16_t(0x4E00 + i)) += u'\n';
    const auto popup = dragsOver(links);
    const auto chosen = desk().windows[popup].links;
    EXPECT_EQ(opensMenu(popup).size(), 2001u);
    EXPECT_TRUE(choosesItem(2000));
    for (std::size_t served = 1; !desk().posted.empty(); ++served) {
        desk().posted.front()();
        desk().posted.pop_front();
        ASSERT_LE(desk().told.size(), served) << "the thread is free between two transfers";
        if (desk().told.size() == 1000) window.reset();
    }
    ASSERT_EQ(desk().told.size(), 2000u);
    for (std::size_t i = 0; i < 2000; ++i)
        ASSERT_EQ(desk().told[i].text("url"), utf8FromUtf16(chosen[i])) << "in their order";
    EXPECT_TRUE(desk().boxes.empty());
}

TEST_F(Choices, AfterThePopupNameThePageAgain) {
    const struct {
        const char* how;
        std::function<void(NativeWindow popup)> closes;
        std::vector<std::string> told;
    } rows[] = {
        {"the next press", [&](auto) { browser.mouse(u"mousedown", &page); }, {"http://films.example/a.mp4"}},
        {"the user", [](auto popup) { closesButton(popup); }, {"http://films.example/a.mp4"}},
        {"the end of its page", [&](auto) { browser.unloads(u"17"); }, {}},
    };
    for (const auto& row : rows) {
        desk().told.clear();
        const auto popup = dragsOver(u"http://h.example/old.zip\nhttp://h.example/old2.zip");
        const auto controller = desk().windows[popup].controller;
        row.closes(popup);
        desk().servesMessages();
        EXPECT_FALSE(isWindow(popup)) << row.how;
        EXPECT_EQ(desk().copies(controller, choiceRecord(u"!ALL!", 17, u"")), 1);
        desk().servesMessages();
        std::vector<std::string> told;
        for (const Told& one : desk().told) told.push_back(one.text("url"));
        EXPECT_EQ(told, row.told) << row.how;
    }
}

}  // namespace
}  // namespace zab::testbed
