#include "entry/modifier_keys.h"

#include <gtest/gtest.h>

namespace zab {
namespace {

constexpr Keys kNone = 0;

TEST(PreventKeys, AreHeldWhenEveryConfiguredOneIs) {
    const struct {
        Keys configured, held;
        bool prevents;
        const char* why;
    } rows[] = {
        {kNone, kAltKey | kShiftKey | kCtrlKey | kDeleteKey, false, "nothing is configured"},
        {kCtrlKey | kShiftKey, kCtrlKey | kShiftKey, true, "both held"},
        {kCtrlKey | kShiftKey, kCtrlKey, false, "one is not"},
        {kCtrlKey | kShiftKey, kCtrlKey | kShiftKey | kAltKey, true, "others may be held too"},
    };
    for (const auto& row : rows) EXPECT_EQ(combinationHeld(row.configured, row.held), row.prevents) << row.why;
}

TEST(ForceKeys, ASingleOneMustBeHeldAlone) {
    constexpr std::uint8_t kToggled = 1, kDown = 0x80;
    const struct {
        Keys configured, held;
        std::size_t code;  // a key of the keyboard...
        std::uint8_t state;
        bool forces;
        const char* why;
    } rows[] = {
        {kNone, kNone, 0, 0, false, "nothing is configured"},
        {kCtrlKey, kCtrlKey, 0, 0, true, "Ctrl alone"},
        {kCtrlKey, kNone, 0, 0, false, "not held"},
        {kCtrlKey, kCtrlKey | kShiftKey, 0, 0, false, "another modifier"},
        {kCtrlKey, kCtrlKey | kInsertKey, 0, 0, false, "Insert counts among them"},
        {kCtrlKey, kCtrlKey | kDeleteKey, 46, kDown, false, "Delete is an ordinary key"},
        {kCtrlKey, kCtrlKey, 'A', kDown, false, "a letter"},
        {kCtrlKey, kCtrlKey, 'A', kToggled, true, "a key that is toggled is not down"},
        {kCtrlKey, kCtrlKey, 31, kDown, true, "below the range"},
        {kCtrlKey, kCtrlKey, 32, kDown, false, "its first code"},
        {kCtrlKey, kCtrlKey, 135, kDown, false, "its last code"},
        {kCtrlKey, kCtrlKey, 136, kDown, true, "above the range"},
        {kInsertKey, kInsertKey, 45, kDown, true, "Insert lies in the range but is the key itself"},
        {kInsertKey, kInsertKey | kAltKey, 45, kDown, false, "Insert and another modifier"},
        {kAltKey | kCtrlKey, kAltKey | kCtrlKey | kShiftKey, 'A', kDown, true, "two may have company"},
        {kAltKey | kCtrlKey, kCtrlKey, 0, 0, false, "but must both be held"},
    };
    for (const auto& row : rows) {
        KeyboardState keyboard{};
        keyboard[row.code] = row.state;
        EXPECT_EQ(forceKeysHeld(row.configured, row.held, keyboard), row.forces) << row.why;
    }
    EXPECT_TRUE(forceKeysHeld(kCtrlKey, kCtrlKey, std::nullopt)) << "a keyboard that cannot be read is clean";
    EXPECT_FALSE(forceKeysHeld(kCtrlKey, kCtrlKey | kAltKey, std::nullopt))
        << "modifiers are known all the same";
}

TEST(ForceKeys, MustHaveBeenDownAtThePressWhenTheMouseIsChecked) {
    constexpr Keys kTwo = kAltKey | kCtrlKey;
    EXPECT_TRUE(forceKeysHeldAtPress(kTwo, false, kNone)) << "not checked";
    EXPECT_FALSE(forceKeysHeldAtPress(kNone, false, kTwo)) << "nothing is configured";
    EXPECT_TRUE(forceKeysHeldAtPress(kTwo, true, kTwo | kInsertKey)) << "others may have been down";
    EXPECT_FALSE(forceKeysHeldAtPress(kTwo, true, kAltKey)) << "one was not";
    EXPECT_FALSE(forceKeysHeldAtPress(kNone, true, kTwo));
}

}  // namespace
}  // namespace zab
