#include "binding/guard.h"
#include "settings/companion_library_win32.h"
#include "ui/button_library.h"
#include "ui/panel_controller.h"

namespace zab {
namespace {

using CreateManager = IZABButtonManager*(const ZABButtonInit*);

CompanionFunction<CreateManager> g_createManager{u"zabbrbtn64.dll", "CreateDownlSelWtZABButton"};
IZABButtonManager* g_manager = nullptr;

}  // namespace

IZABButtonManager* buttonManager() noexcept {
    if (g_manager != nullptr) return g_manager;
    guarded([] {
        CreateManager* const create = g_createManager.function();
        if (create == nullptr) return;
        ZABButtonInit init;
        init.controllerWindow = processController();
        if (init.controllerWindow == 0) return;  // told once and for all: not yet
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
