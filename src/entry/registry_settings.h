// The settings of this machine, as the decisions ask for them.
#pragma once

#include "settings/settings_view.h"

namespace zab {

/// Registry, data file and keyboard, each read at the question.
class RegistrySettings final : public SettingsView {
  public:
    [[nodiscard]] std::optional<std::string> extensions() const override;
    [[nodiscard]] bool integrationOn() const override;
    [[nodiscard]] CExceptionServersList exceptionServers() const override;
    [[nodiscard]] bool preventKeyHeld() const override;
    [[nodiscard]] bool forceKeyHeld() const override;
    [[nodiscard]] bool listenSkipped(std::string_view host) const override;
    [[nodiscard]] std::uint32_t panelViewFlag() const override;
};

}  // namespace zab
