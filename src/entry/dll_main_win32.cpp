// Load and unload of the module.
//
// All of this runs under the loader lock. Load takes what the compiler's runtime needs for exceptions; the
// browser's runtime was bound by the static initialisation before. Unload destroys the manager of the button
// library, which may not wait for its threads then, and closes the shared-list mutex and the settings keys that
// are kept open, plain handles whose closing waits for nobody; and only when the module leaves a living
// process: when the process itself ends, the system has already ended every other thread, and closes the
// handles by itself. No thread is started or waited for, no window is touched, no browser object is released:
// the browser's own libraries may be gone by now.

#include "binding/throwing_win32.h"
#include "binding/wide_win32.h"
#include "settings/settings_store.h"
#include "ui/button_library.h"

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID processEnds) {
    if (reason == DLL_PROCESS_ATTACH) zab::prepareProcessToThrow();
    if (reason == DLL_PROCESS_DETACH && processEnds == nullptr) {
        zab::destroyButtonManager();
        zab::closeSharedState();
    }
    return TRUE;
}
