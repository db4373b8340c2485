#include "ui/front_pages.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace zab {
namespace {

TEST(FrontPages, EachWindowHasItsOwn) {
    FrontPages fronts;
    fronts.loading(17, 1);
    fronts.loading(18, 1);
    EXPECT_FALSE(fronts.isFront(17, 1));
    EXPECT_TRUE(fronts.isFront(18, 1)) << "nobody was told: the last that loads";
    fronts.select(17, 1, false);
    fronts.select(20, 2, false);
    EXPECT_TRUE(fronts.isFront(17, 1));
    EXPECT_TRUE(fronts.isFront(20, 2)) << "another window's page stays in front";
    fronts.select(0, 1, true);
    EXPECT_FALSE(fronts.isFront(17, 1) || fronts.isFront(18, 1)) << "a tab without a document";
    fronts.ended(20);
    EXPECT_FALSE(fronts.isFront(20, 2) || fronts.isFront(21, 2)) << "none until the next selection";
    fronts.select(17, 2, false);
    EXPECT_TRUE(fronts.isFront(17, 2)) << "its tab moved";
}

TEST(FrontPages, AGuessIsPutRightWhenThePageIsSeen) {
    FrontPages fronts;
    fronts.select(17, 1, false);
    fronts.select(20, 1, true);
    EXPECT_FALSE(fronts.isFront(17, 1));
    fronts.seen(20, 2);
    EXPECT_TRUE(fronts.isFront(17, 1) && fronts.isFront(20, 2));
    fronts.select(30, 0, true);
    EXPECT_TRUE(fronts.isFront(30, 3)) << "somewhere, so anywhere that is not told otherwise";
    fronts.seen(30, 3);
    EXPECT_FALSE(fronts.isFront(30, 4));
}

/// Two windows with three tabs each; tabs are selected, moved with their selection, closed and opened.
TEST(FrontPages, FollowATabWhereverItGoes) {
    std::mt19937 random(19);
    FrontPages fronts;
    std::map<DocumentId, WindowHandle> tabs;
    std::map<WindowHandle, DocumentId> front{{1, 0}, {2, 0}};
    DocumentId next = 1;
    const auto selects = [&](DocumentId tab, WindowHandle window) {
        front[window] = tab;
        fronts.select(tab, window, false);
    };
    for (int step = 0; step < 1000; ++step) {
        while (tabs.size() < 6) selects(next, tabs[next] = 1 + next % 2), ++next;
        auto tab = tabs.begin();
        std::advance(tab, random() % tabs.size());
        const auto [document, window] = *tab;
        const WindowHandle other = 3 - window;
        const bool wasFront = front[window] == document;
        switch (random() % 4) {
            case 0:
                tabs[document] = other;
                if (wasFront) front[window] = 0;
                selects(document, other);
                break;
            case 1:
                tabs.erase(tab);
                if (wasFront) front[window] = 0;
                fronts.ended(document);
                break;
            default: selects(document, window);
        }
        for (const auto& [shown, where] : tabs)
            ASSERT_EQ(fronts.isFront(shown, where), front[where] == shown) << "step " << step;
    }
}

}  // namespace
}  // namespace zab
