#include <atomic>
#include <span>

#include "binding/guard.h"
#include "entry/modifier_keys.h"
#include "settings/settings_keys_win32.h"

namespace zab {
namespace {

Keys keysDownNow() noexcept {
    constexpr struct {
        int virtualKey;
        Keys key;
    } kCodes[] = {{VK_CONTROL, kCtrlKey},
                  {VK_MENU, kAltKey},
                  {VK_SHIFT, kShiftKey},
                  {VK_INSERT, kInsertKey},
                  {VK_DELETE, kDeleteKey}};
    Keys held = 0;
    for (const auto& code : kCodes)
        if (GetKeyState(code.virtualKey) < 0) held |= code.key;
    return held;
}

std::optional<KeyboardState> keyboardNow() noexcept {
    KeyboardState keyboard{};
    if (!GetKeyboardState(keyboard.data())) return std::nullopt;
    return keyboard;
}

bool isSet(const RegistryKey& key, const char* name) noexcept { return key.number(name).value_or(0) != 0; }

Keys configuredKeys(const RegistryKey& key, std::span<const KeySetting> settings) noexcept {
    Keys configured = 0;
    for (const auto& setting : settings)
        if (isSet(key, setting.name)) configured |= setting.key;
    return configured;
}

// Written by the browser's main thread, read by whichever thread asks.
std::atomic<Keys> keysAtPress{0};

}  // namespace

bool IsPreventKeyDown() noexcept {
    return guarded(false, [] {
        const RegistryKey* key = specialKeysKey();
        if (key == nullptr || !isSet(*key, kUseKeyToPrevent)) return false;
        return combinationHeld(configuredKeys(*key, kPreventKeys), keysDownNow());
    });
}

bool IsForceKeyDown() noexcept {
    return guarded(false, [] {
        const RegistryKey* key = specialKeysKey();
        if (key == nullptr || !isSet(*key, kUseKeyToForce)) return false;
        const Keys configured = configuredKeys(*key, kForceKeys);
        const bool checkMouse = isSet(*key, kCheckMouse);
        return forceKeysHeld(configured, keysDownNow(), keyboardNow()) &&
               forceKeysHeldAtPress(configured, checkMouse, keysAtPress.load());
    });
}

bool WereForceKeysDownAtMousePress(bool alt, bool shift, bool ctrl, bool ins, bool checkMouse) noexcept {
    const Keys configured =
        (alt ? kAltKey : 0) | (shift ? kShiftKey : 0) | (ctrl ? kCtrlKey : 0) | (ins ? kInsertKey : 0);
    return forceKeysHeldAtPress(configured, checkMouse, keysAtPress.load());
}

void recordMousePressKeys() noexcept { keysAtPress.store(keysDownNow()); }

}  // namespace zab
