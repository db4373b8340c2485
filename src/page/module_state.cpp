#include "page/module_state.h"

#include "binding/never_destroyed.h"
#include "page/platform.h"

namespace zab {
namespace {

bool g_seen[2] = {};

}  // namespace

ModuleState& moduleState() {
    static NeverDestroyed<ModuleState> state;
    return state.get();
}

void markSeen(BrowserHook hook) noexcept {
    bool& seen = g_seen[static_cast<int>(hook)];
    if (seen) return;
    seen = true;
    if (bothHooksSeen()) announceIntegration();
}

bool bothHooksSeen() noexcept { return g_seen[0] && g_seen[1]; }

}  // namespace zab
