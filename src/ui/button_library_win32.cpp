#include "binding/guard.h"
#include "binding/library_win32.h"
#include "settings/settings_store.h"
#include "ui/button_library.h"
#include "ui/panel_controller.h"

namespace zab {
namespace {

using CreateManager = IZABButtonManager*(const ZABButtonInit*);

IZABButtonManager* g_manager = nullptr;

/// The library stays loaded once it is found, whether it has a manager to give or not.
CreateManager* findLibrary() {
    const auto path = companionPath(u"zabbrbtn64.dll");
    if (!path) return nullptr;
    return exportOf<CreateManager>(LoadLibraryW(wide(*path)), "CreateDownlSelWtZABButton");
}

}  // namespace

IZABButtonManager* buttonManager() noexcept {
    if (g_manager != nullptr) return g_manager;
    guarded([] {
        CreateManager* const create = findLibrary();
        if (create == nullptr) return;
        ZABButtonInit init;
        init.controllerWindow = processController();
        g_manager = create(&init);
    });
    return g_manager;
}

void destroyButtonManager() noexcept {
    constexpr std::uint32_t kAndFree = 1;
    if (g_manager != nullptr) g_manager->DeleteThis(kAndFree);
    g_manager = nullptr;
}

}  // namespace zab
