#include "binding/runtime.h"

namespace zab {
namespace {

constinit XpcomRuntime g_runtime{};

}  // namespace

XpcomRuntime& runtimeRecord() noexcept { return g_runtime; }

}  // namespace zab
