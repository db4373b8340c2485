#include "browser/process_view.h"

#include "binding/wide_win32.h"

namespace zab::testbed {

std::uint64_t privateBytes() {
    std::uint64_t bytes = 0;
    MEMORY_BASIC_INFORMATION region{};
    for (const char* at = nullptr; VirtualQuery(at, &region, sizeof(region)) != 0;
         at = static_cast<const char*>(region.BaseAddress) + region.RegionSize)
        if (region.State == MEM_COMMIT && region.Type == MEM_PRIVATE) bytes += region.RegionSize;
    return bytes;
}

}  // namespace zab::testbed
