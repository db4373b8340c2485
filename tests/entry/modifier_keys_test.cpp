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
        {kDeleteKey, kDeleteKey, true, "Delete"},
        {kDeleteKey, kInsertKey, false, "another key"},
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

/// The same rule, told key by key.
bool stepByStep(bool alt, bool shift, bool ctrl, bool ins, bool checkMouse, Keys press) {
    const auto was = [press](Keys key) { return (press & key) != 0; };
    if (alt && checkMouse && !was(kAltKey)) return false;
    if (!alt && !shift && !ctrl) return ins && (!checkMouse || was(kInsertKey));
    if (shift && checkMouse && !was(kShiftKey)) return false;
    if ((ctrl || (!alt && !shift)) && checkMouse && !was(kCtrlKey)) return false;
    return !ins || !checkMouse || was(kInsertKey);
}

TEST(ForceKeys, MustHaveBeenDownAtThePressWhenTheMouseIsChecked) {
    for (Keys configured = 0; configured < 16; ++configured) {
        for (Keys press = 0; press < 16; ++press) {
            for (const bool check : {false, true}) {
                const auto is = [configured](Keys key) { return (configured & key) != 0; };
                EXPECT_EQ(forceKeysHeldAtPress(configured, check, press),
                          stepByStep(is(kAltKey), is(kShiftKey), is(kCtrlKey), is(kInsertKey), check, press))
                    << configured << ' ' << press << ' ' << check;
            }
        }
    }
}

}  // namespace
}  // namespace zab
