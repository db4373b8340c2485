#include "ui/panel_settings.h"

#include <algorithm>

#include "binding/text.h"
#include "web/url.h"

namespace zab {

bool CDwnlSelectedPanelSettings::opensPopup(std::span<const std::string> links) const noexcept {
    if (links.empty() || mode == kNever) return false;
    if (mode != kNamedTypes) return true;
    return std::ranges::any_of(links, [this](const std::string& link) {
        const std::string_view extension = extensionOf(lastSegmentOf(link));
        return !extension.empty() && std::ranges::any_of(names, [extension](const std::string& name) {
            return equalsIgnoringCase(extension, name);
        });
    });
}

}  // namespace zab
