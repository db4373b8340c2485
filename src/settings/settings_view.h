// The settings that the decisions of the interception ask for, each only when a rule needs it.
//
// Every question reads its value anew, so that a change takes effect with the next response and a response that
// no rule is interested in costs no registry read. The module asks the registry; zabprobe and tests give
// values.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "settings/exception_servers.h"

namespace zab {

class SettingsView {
  public:
    /// The extensions to catch, separated by blanks; nothing when the list is absent or cannot be read.
    [[nodiscard]] virtual std::optional<std::string> extensions() const = 0;
    /// Off only when the user switched the integration with this browser off.
    [[nodiscard]] virtual bool integrationOn() const = 0;
    [[nodiscard]] virtual CExceptionServersList exceptionServers() const = 0;
    [[nodiscard]] virtual bool preventKeyHeld() const = 0;
    /// To be asked only when the prevent key is not held.
    [[nodiscard]] virtual bool forceKeyHeld() const = 0;
    /// Whether the data file keeps body listeners away from responses of `host`.
    [[nodiscard]] virtual bool listenSkipped(std::string_view host) const = 0;
    /// 0 or 1, as `GetPanelViewFlag` answers.
    [[nodiscard]] virtual std::uint32_t panelViewFlag() const = 0;

  protected:
    ~SettingsView() = default;
};

/// Settings as plain values, with the defaults of a machine on which nothing is configured.
struct GivenSettings final : SettingsView {
    std::optional<std::string> extensionList;
    bool integration = true;
    std::string exceptionList;
    bool preventKey = false;
    bool forceKey = false;
    std::uint32_t panelView = 1;

    [[nodiscard]] std::optional<std::string> extensions() const override { return extensionList; }
    [[nodiscard]] bool integrationOn() const override { return integration; }
    [[nodiscard]] CExceptionServersList exceptionServers() const override {
        return CExceptionServersList(exceptionList);
    }
    [[nodiscard]] bool preventKeyHeld() const override { return preventKey; }
    [[nodiscard]] bool forceKeyHeld() const override { return forceKey; }
    [[nodiscard]] bool listenSkipped(std::string_view) const override { return false; }
    [[nodiscard]] std::uint32_t panelViewFlag() const override { return panelView; }
};

}  // namespace zab
