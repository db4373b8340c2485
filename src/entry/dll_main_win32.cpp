// Load and unload of the module, under the loader lock.
//
// Load takes what the compiler's runtime needs for exceptions; the browser's runtime was bound by the static
// initialisation before. Unload closes the settings keys that are kept open: that happens only to a module that
// never registered its observers, since a registered one stays loaded and gives everything back when the
// browser lets the observers go. When the process itself ends, the system closes the handles by itself. No
// thread is started or waited for, no window is touched, no browser object is released.

#include "binding/throwing_win32.h"
#include "binding/wide_win32.h"
#include "settings/settings_store.h"

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID processEnds) {
    if (reason == DLL_PROCESS_ATTACH) zab::prepareProcessToThrow();
    if (reason == DLL_PROCESS_DETACH && processEnds == nullptr) zab::closeSharedState();
    return TRUE;
}
