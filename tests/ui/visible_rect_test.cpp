#include "ui/visible_rect.h"

#include <gtest/gtest.h>

namespace {

using namespace zab;

TEST(VisibleRect, ScalesAsWindowsDoes) {
    const struct {
        std::int32_t value, numerator, denominator, result;
        const char* why;
    } rows[] = {
        {100, 144, 96, 150, "exact"},
        {1, 144, 96, 2, "a half goes up"},
        {-1, 144, 96, -2, "away from zero"},
        {1, 120, 96, 1, "less than a half goes down"},
        {3, 1, -2, -2, "a negative divisor turns the sign before rounding"},
        {INT32_MAX, 192, 96, -1, "does not fit"},
        {INT32_MIN, INT32_MIN, 1, -1, "the largest product"},
        {INT32_MIN, INT32_MIN, INT32_MIN, INT32_MIN, "and back"},
        {7, 3, 0, -1, "no divisor"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(scaled(row.value, row.numerator, row.denominator), row.result) << row.why;
}

TEST(VisibleRect, IsTheContentElementOnAnyDisplay) {
    const struct {
        Resolution resolution;
        PixelRect visible;
        const char* why;
    } rows[] = {
        {{}, {13, 23, 11 + 100 - 2 - 17, 21 + 50 - 2 - 16}, "a display that cannot be asked"},
        {{120, 120}, {16, 28, 14 + 125 - 19, 26 + 63 - 18}, "62.5 pixels are 63"},
        {{96, 192}, {13, 44, 11 + 100 - 19, 42 + 100 - 18}, "each direction has its own resolution"},
    };
    for (const auto& row : rows) {
        const WindowFacts window{{0, 0, 800, 600}, row.resolution, 17, 16, {}};
        EXPECT_EQ(placementOf(window, ElementBox{11, 21, 100, 50}), (Placement{row.visible, {}, true}))
            << row.why;
    }
    const WindowFacts window{{0, 0, 800, 600}, {192, 192}, 17, 16, {}};
    EXPECT_EQ(placementOf(window, {}), (Placement{{2, 2, 781, 582}, {}, false}))
        << "a client area is not scaled";
    const ElementBox nonsense{INT32_MAX, INT32_MAX, INT32_MAX, 1};
    EXPECT_EQ(placementOf({}, nonsense).visible.right, INT32_MAX - 2) << "a sum ends at the limit";
}

TEST(VisibleRect, RemembersTheCursorWhereItLiesInside) {
    WindowFacts window{{0, 0, 100, 100}, {}, 10, 10, PixelPoint{2, 2}};
    const Placement first = placementOf(window, {});
    EXPECT_EQ(first.cursor, (PixelRect{1, 1, 4, 4})) << "the first pixel";
    window.cursor = PixelPoint{88, 50};
    EXPECT_EQ(placementOf(window, {}, first).cursor, first.cursor) << "behind the last pixel: the place before";
    window.cursor.reset();
    EXPECT_EQ(placementOf(window, {}, first).cursor, first.cursor) << "no cursor at all";
}

}  // namespace
