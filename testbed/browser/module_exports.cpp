#include "browser/module_exports.h"

#include "browser/library.h"

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

ModuleExports ModuleExports::of(void* library) {
    ModuleExports exports{};
    auto* place = reinterpret_cast<void**>(&exports);
    for (const char* name : kNames) *place++ = exportedBy(library, name);
    return exports;
}

}  // namespace zab::testbed
