#include "ui/panel_gate.h"

#include "binding/text.h"
#include "page/media_entry.h"

namespace zab {
namespace {

constexpr std::size_t kLongestExtension = 31;
constexpr std::uint32_t kTypeWithPage = 2;  // this type is subject to what is set for pages without a panel

}  // namespace

std::optional<std::string> panelValueName(std::string_view extension) {
    if (extension.empty() || extension.size() > kLongestExtension) return std::nullopt;
    return uppered(extension);
}

PanelGate panelGate(std::string_view pageUrl, std::string_view extension, const PanelValues& values) noexcept {
    PanelGate gate;
    if (values.everyType || extension.empty()) return gate;
    const bool builtIn = isMediaExtension(extension);
    gate.refused = extension.size() > kLongestExtension || (!values.type && !builtIn);
    if (gate.refused || !values.keyOpen) return gate;
    gate.minimumSize = values.minimumSize;
    gate.excepted = values.exceptedPages.IsListed(pageUrl);
    const bool subject = !values.type || *values.type == kTypeWithPage || gate.excepted;
    if (subject && values.captureWithoutPanel == 1) gate.captureFlag = 1;
    return gate;
}

}  // namespace zab
