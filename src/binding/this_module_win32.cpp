#include "binding/this_module_win32.h"

#include "binding/handle_win32.h"
#include "binding/library_win32.h"

namespace zab {
namespace {

HMODULE moduleOfThisCode(DWORD flags) noexcept {
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | flags,
                       reinterpret_cast<const char*>(&moduleOfThisCode), &module);
    return module;
}

}  // namespace

HMODULE pinnedModule() noexcept { return moduleOfThisCode(GET_MODULE_HANDLE_EX_FLAG_PIN); }

void leaveThread() noexcept {
    // The reference is given back where no code of the module has to run any more.
    FreeLibraryAndExitThread(moduleOfThisCode(GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT), 0);
    __builtin_unreachable();
}

DWORD startThread(LPTHREAD_START_ROUTINE entry, void* parameter) noexcept {
    constexpr DWORD kOneMoreReference = 0;
    Library module(moduleOfThisCode(kOneMoreReference));
    DWORD id = 0;
    const Handle thread(module ? CreateThread(nullptr, 0, entry, parameter, 0, &id) : nullptr);
    if (!thread) return 0;
    (void)module.release();  // the thread's own now
    return id;
}

}  // namespace zab
