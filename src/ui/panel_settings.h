// For which selections of links the user wants the popup.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace zab {

class CDwnlSelectedPanelSettings {
  public:
    enum Mode : std::uint32_t {
        kAnyLink = 1,  // so does every number that has no meaning of its own
        kNever = 2,
        kNamedTypes = 3,  // a selection that holds at least one link with an extension among the names
    };

    /// The settings as they stand now; what is missing is the default. Any thread.
    static CDwnlSelectedPanelSettings load();

    /// Whether a selection of these links gets a popup. Extensions are compared ignoring case.
    [[nodiscard]] bool opensPopup(std::span<const std::string> links) const noexcept;

    std::uint32_t mode = kAnyLink;
    std::vector<std::string> names;  // extensions without dot; read in mode kNamedTypes alone
};

}  // namespace zab
