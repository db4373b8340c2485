#include "settings/settings_keys_win32.h"
#include "settings/settings_store.h"
#include "ui/panel_gate.h"

namespace zab {
namespace {

PanelValues readPanelValues(std::string_view extension) {
    PanelValues values;
    const RegistryKey* panel = panelKey();
    if (panel == nullptr) return values;
    values.keyOpen = true;
    values.everyType = panel->number(kAllTypes) == 1;
    const auto name = panelValueName(extension);
    if (!name || values.everyType) return values;
    values.type = panel->number(name->c_str());
    if (const RegistryKey* sizes = minimumSizesKey())
        values.minimumSize = sizes->number(NumberValue{std::string(extension).c_str(), 0});
    values.captureWithoutPanel = panel->number(kCaptureWithoutPanel);
    values.exceptedPages = readExceptionServers(kPanelExceptionServers);
    return values;
}

}  // namespace

EntryFate entryFate(std::string_view pageUrl, std::string_view extension, std::uint64_t size) {
    return fateOf(panelGate(pageUrl, extension, readPanelValues(extension)), size);
}

}  // namespace zab
