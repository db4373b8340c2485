// Keys that the user holds to steer the interception: the "prevent" keys leave a download to the browser, the
// "force" keys take a link whatever it is. Which keys these are stands in the settings.
//
// The rules are pure functions over sets of keys; the edge reads settings and keyboard anew at every question.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

namespace zab {

/// A set of keys, one bit each.
using Keys = std::uint32_t;
inline constexpr Keys kAltKey = 1, kShiftKey = 2, kCtrlKey = 4, kInsertKey = 8, kDeleteKey = 16;

/// A DWORD under "SpecialKeys"; any value but 0 makes the key part of the combination.
struct KeySetting {
    const char* name;
    Keys key;
};
// In the order in which they are read.
inline constexpr const char* kUseKeyToPrevent = "UseKeyToPrevent";
inline constexpr KeySetting kPreventKeys[] = {
    {"AltP", kAltKey}, {"ShiftP", kShiftKey}, {"CtrlP", kCtrlKey}, {"DelP", kDeleteKey}};
inline constexpr const char* kUseKeyToForce = "UseKeyToForce";
inline constexpr KeySetting kForceKeys[] = {
    {"AltF", kAltKey}, {"CtrlF", kCtrlKey}, {"ShiftF", kShiftKey}, {"InsF", kInsertKey}};
inline constexpr const char* kCheckMouse = "CheckMouse";

/// One byte per virtual-key code; above 127: down.
using KeyboardState = std::array<std::uint8_t, 256>;

/// Every configured key is held; others may be held as well. Nothing configured: never.
constexpr bool combinationHeld(Keys configured, Keys held) noexcept {
    return configured != 0 && (configured & ~held) == 0;
}

/// The combination is held, and a single key is held alone: no other of Alt, Shift, Ctrl and Insert, and no
/// ordinary key (`keyboard`; nothing when it cannot be read). Two and more keys may have company.
bool forceKeysHeld(Keys configured, Keys held, const std::optional<KeyboardState>& keyboard) noexcept;

/// What "CheckMouse" demands of the keys that were down at the last mouse press.
constexpr bool forceKeysHeldAtPress(Keys configured, bool checkMouse, Keys press) noexcept {
    return checkMouse ? combinationHeld(configured, press) : configured != 0;
}

/// Whether the prevent keys are held now.
bool IsPreventKeyDown() noexcept;
/// Whether the force keys are held now and, if so configured, were at the last mouse press. To be asked only
/// when the prevent keys are not.
bool IsForceKeyDown() noexcept;
bool WereForceKeysDownAtMousePress(bool alt, bool shift, bool ctrl, bool ins, bool checkMouse) noexcept;

/// Keeps which keys are down. To be called at each mouse press, before the click can lead to a request.
void recordMousePressKeys() noexcept;

}  // namespace zab
