#include "entry/modifier_keys.h"

#include <gtest/gtest.h>

#include "readings.h"

namespace zab {
namespace {

constexpr Keys kNone = 0;

TEST(ForceKeys, ASingleOneMustBeHeldAlone) {
    constexpr std::uint8_t kToggled = 1, kDown = 0x80;
    struct Given {
        Keys configured, held;
        std::size_t code = 0;  // a key of the keyboard...
        std::uint8_t state = 0;
    };
    const zabtest::ReadingOf<bool, Given> rows[] = {
        {{kNone, kCtrlKey}, false, "nothing is configured"},
        {{kCtrlKey, kCtrlKey}, true, "Ctrl alone"},
        {{kCtrlKey, kNone}, false, "not held"},
        {{kCtrlKey, kCtrlKey | kShiftKey}, false, "another modifier"},
        {{kCtrlKey, kCtrlKey | kInsertKey}, false, "Insert counts among them"},
        {{kCtrlKey, kCtrlKey, 'A', kToggled}, true, "a key that is toggled is not down"},
        {{kCtrlKey, kCtrlKey, 31, kDown}, true, "below the range"},
        {{kCtrlKey, kCtrlKey, 32, kDown}, false, "its first code"},
        {{kCtrlKey, kCtrlKey, 135, kDown}, false, "its last code"},
        {{kCtrlKey, kCtrlKey, 136, kDown}, true, "above the range"},
        {{kInsertKey, kInsertKey, 45, kDown}, true, "Insert lies in the range but is the key itself"},
        {{kInsertKey, kInsertKey | kAltKey, 45, kDown}, false, "Insert and another modifier"},
        {{kAltKey | kCtrlKey, kAltKey | kCtrlKey | kShiftKey, 'A', kDown}, true, "two may have company"},
        {{kAltKey | kCtrlKey, kCtrlKey}, false, "but must both be held"},
    };
    const auto forces = [](const Given& given) {
        KeyboardState keyboard{};
        keyboard[given.code] = given.state;
        return forceKeysHeld(given.configured, given.held, keyboard);
    };
    zabtest::expectReadings(forces, rows);
    EXPECT_TRUE(forceKeysHeld(kCtrlKey, kCtrlKey, std::nullopt)) << "a keyboard that cannot be read is clean";
}

TEST(ForceKeys, MustHaveBeenDownAtThePressWhenTheMouseIsChecked) {
    constexpr Keys kTwo = kAltKey | kCtrlKey;
    EXPECT_FALSE(forceKeysHeldAtPress(kNone, false, kTwo)) << "nothing is configured";
    EXPECT_TRUE(forceKeysHeldAtPress(kTwo, true, kTwo | kInsertKey)) << "others may have been down";
    EXPECT_FALSE(forceKeysHeldAtPress(kTwo, true, kAltKey)) << "one was not";
}

}  // namespace
}  // namespace zab
