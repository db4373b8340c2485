#include "settings/registry_key_win32.h"
#include "ui/panel_settings.h"

namespace zab {

CDwnlSelectedPanelSettings CDwnlSelectedPanelSettings::load() {
    CDwnlSelectedPanelSettings settings;
    const RegistryKey key = RegistryKey::open(kSelectedPanelPath, RegistryKey::kQueryAndEnumerate);
    if (!key) return settings;
    settings.mode = key.number(kPanelMode);
    if (settings.mode != kNamedTypes) return settings;
    for (std::uint32_t index = 0; auto name = key.subkey(index); ++index)
        settings.names.push_back(std::move(*name));
    return settings;
}

}  // namespace zab
