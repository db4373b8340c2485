#include "browser/module_exports.h"

#include <filesystem>
#include <stdexcept>

#include "binding/wide_win32.h"

namespace zab::testbed {
namespace {

constexpr const char* kNames[] = {
    "ZABMzCC_InitCC",
    "ZABMzCC_Observe",
    "ZABMzCC_OnTabSelect",
    "ZABMzCC_OnGetSelectedTabID",
    "ZABMzCC_OnUnload",
    "ZABMzCC_OnME",
    "ZABMzCC_GetListenerState",
    "ZABMzCC_ShouldLoad",
    "ZABMzCC_ShouldLoad2",
    "ZABMzCC_ShouldLoad_old1",
    "ZABMzCC_DownloadLinkWithZAB",
    "ZABMzCC_DownloadAllWithZAB",
    "ZABMzCC_DownloadLastFLVwithZAB",
    "ZABMzCC_DownloadLast10FLVwithZAB",
};
static_assert(sizeof(ModuleExports) == sizeof(kNames), "one name for each export, in their order");

}  // namespace

ModuleExports ModuleExports::load(const std::string& path) {
    const HMODULE library = LoadLibraryA(path.c_str());
    if (library == nullptr) throw std::runtime_error("cannot load " + path);
    ModuleExports exports{};
    auto* place = reinterpret_cast<void**>(&exports);
    for (const char* name : kNames) {
        *place = reinterpret_cast<void*>(GetProcAddress(library, name));
        if (*place++ == nullptr) throw std::runtime_error(std::string("the module lacks ") + name);
    }
    return exports;
}

ModuleExports ModuleExports::loadCopy(const std::string& path) {
    static unsigned copies = 0;
    const auto folder =
        std::filesystem::temp_directory_path() / ("zab_modules_" + std::to_string(GetCurrentProcessId()));
    std::filesystem::create_directories(folder);
    const auto copy = folder / ("module" + std::to_string(++copies) + ".dll");
    std::filesystem::copy_file(path, copy, std::filesystem::copy_options::overwrite_existing);
    return load(copy.string());
}

}  // namespace zab::testbed
