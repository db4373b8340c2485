#include "binding/runtime_win32.h"

#include <cstring>
#include <optional>
#include <string>

#include "binding/browser_version.h"
#include "binding/guard.h"
#include "binding/runtime.h"
#include "binding/version_resource_win32.h"
#include "binding/wide_win32.h"

namespace zab {
namespace {

HMODULE loadedRuntime(std::int32_t version) {
    for (const char16_t* name : runtimeLibraries(version))
        if (const HMODULE module = GetModuleHandleW(wide(name))) return module;
    return nullptr;
}

/// From the browser's own folder and nowhere else.
HMODULE loadRuntime(std::int32_t version) {
    const auto executable = executablePath();
    if (!executable) return nullptr;
    const std::u16string folder(folderOf(*executable));
    if (folder.empty()) return nullptr;
    for (const char16_t* name : runtimeLibraries(version))
        if (const HMODULE module = LoadLibraryW(wide(folder + name))) return module;
    return nullptr;
}

void lookUpEntryPoints(XpcomRuntime& record) {
    const auto module = static_cast<HMODULE>(record.module);
    for (const auto& entry : kRuntimeEntryPoints) {
        const FARPROC address = GetProcAddress(module, entry.name);
        std::memcpy(reinterpret_cast<std::uint8_t*>(&record) + entry.offset, &address, sizeof(address));
    }
}

}  // namespace

std::int32_t GetBrowserMajorVersion() noexcept {
    return guarded(kUnknownBrowserVersion, [] {
        const auto executable = executablePath();
        if (!executable) return kUnknownBrowserVersion;
        const auto fileVersion = versionResourceText(*executable, u"FileVersion");
        if (!fileVersion) return kUnknownBrowserVersion;
        return treatedAsVersion(majorOfFileVersion(*fileVersion), *executable);
    });
}

std::int32_t BindXpcomRuntime() noexcept {
    guarded([] {
        XpcomRuntime& record = runtimeRecord();
        const std::int32_t version = GetBrowserMajorVersion();
        if (record.module == nullptr) record.module = loadedRuntime(version);
        if (record.module == nullptr) record.module = loadRuntime(version);
        if (record.module != nullptr) lookUpEntryPoints(record);
    });
    return 1;
}

namespace {

// Binding happens while the module is loaded, so that every export finds the record filled. It runs under the
// loader lock, and is safe there because it starts no thread and waits for none: it reads the executable's
// version resource (version.dll is a static import, initialised before us), asks for modules that are already
// loaded and looks up their exports. Only a process that has not loaded its runtime reaches LoadLibraryW; the
// lock is re-entrant on this thread, and the runtime's own start belongs to that process anyway. The record and
// the version are constant-initialised, so this order is the only one that matters.
struct StartOfModule {
    StartOfModule() noexcept {
        BindXpcomRuntime();
        setBrowserMajorVersion(GetBrowserMajorVersion());
    }
} const g_startOfModule;

}  // namespace
}  // namespace zab
