#include "binding/library_win32.h"

#include <string>

#include "binding/guard.h"

namespace zab {
namespace {

/// Where a library of the system folder lies; empty when Windows does not tell the folder.
std::string inSystemFolder(const char* name) {
    char folder[MAX_PATH];
    const UINT length = GetSystemDirectoryA(folder, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) return {};
    std::string path(folder, length);
    if (path.back() != '\\') path += '\\';
    return path + name;
}

}  // namespace

HMODULE LoadSystemLibrary(const char* name) noexcept {
    return guarded(HMODULE{nullptr}, [&] {
        const std::string path = inSystemFolder(name);
        const HMODULE library = path.empty() ? nullptr : LoadLibraryA(path.c_str());
        return library != nullptr ? library : LoadLibraryA(name);
    });
}

}  // namespace zab
