#include "entry/modifier_keys.h"

#include <bit>

namespace zab {
namespace {

constexpr Keys kModifiers = kAltKey | kShiftKey | kCtrlKey | kInsertKey;

// Virtual-key codes.
constexpr std::size_t kInsert = 45;
constexpr std::size_t kFirstOrdinary = 32, kLastOrdinary = 135;  // space to F24

bool ordinaryKeyIsDown(Keys configured, const KeyboardState& keyboard) noexcept {
    for (std::size_t code = kFirstOrdinary; code <= kLastOrdinary; ++code)
        if (keyboard[code] > 127 && !(code == kInsert && (configured & kInsertKey) != 0)) return true;
    return false;
}

}  // namespace

bool forceKeysHeld(Keys configured, Keys held, const std::optional<KeyboardState>& keyboard) noexcept {
    if (!combinationHeld(configured, held)) return false;
    // The asymmetry is meant: a single key is easily held for another purpose, a combination is not.
    if (std::popcount(configured) > 1) return true;
    if (keyboard && ordinaryKeyIsDown(configured, *keyboard)) return false;
    return std::popcount(held & kModifiers) == 1;
}

}  // namespace zab
