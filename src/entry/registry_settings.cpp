#include "entry/registry_settings.h"

#include "entry/modifier_keys.h"
#include "settings/data_file.h"
#include "settings/settings_store.h"

namespace zab {

std::optional<std::string> RegistrySettings::extensions() const { return extensionList(); }
bool RegistrySettings::integrationOn() const { return IsBrowserIntegrationEnabled() != 0; }
CExceptionServersList RegistrySettings::exceptionServers() const {
    return readExceptionServers(kExceptionServers);
}
bool RegistrySettings::preventKeyHeld() const { return IsPreventKeyDown(); }
bool RegistrySettings::forceKeyHeld() const { return IsForceKeyDown(); }
bool RegistrySettings::listenSkipped(std::string_view host) const {
    return dataFile().read()->skipsListening(host);
}
std::uint32_t RegistrySettings::panelViewFlag() const { return GetPanelViewFlag(); }

}  // namespace zab
