#include "ui/front_pages.h"

#include <gtest/gtest.h>

namespace zab {
namespace {

TEST(FrontPages, AreTheLastThatLoadUntilOneIsToldOrSeen) {
    FrontPages fronts;
    fronts.loading(17, 1);
    fronts.loading(18, 1);
    EXPECT_FALSE(fronts.isFront(17, 1));
    EXPECT_TRUE(fronts.isFront(18, 1));
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

}  // namespace
}  // namespace zab
