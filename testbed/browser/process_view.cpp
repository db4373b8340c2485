#include "browser/process_view.h"

#include <string_view>

#include "binding/wide_win32.h"
// Behind windows.h, which it needs.
#include <tlhelp32.h>

namespace zab::testbed {

std::uint64_t privateBytes() {
    std::uint64_t bytes = 0;
    MEMORY_BASIC_INFORMATION region{};
    for (const char* at = nullptr; VirtualQuery(at, &region, sizeof(region)) != 0;
         at = static_cast<const char*>(region.BaseAddress) + region.RegionSize)
        if (region.State == MEM_COMMIT && region.Type == MEM_PRIVATE) bytes += region.RegionSize;
    return bytes;
}

ProcessCounts processCounts() {
    constexpr std::uintptr_t kHandleStep = 4, kLastHandle = 0x8000;
    ProcessCounts counts;
    DWORD flags = 0, process = 0;
    for (std::uintptr_t number = kHandleStep; number <= kLastHandle; number += kHandleStep)
        counts.handles += GetHandleInformation(reinterpret_cast<HANDLE>(number), &flags) != 0;
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 thread{};
    thread.dwSize = sizeof thread;
    for (BOOL more = Thread32First(snapshot, &thread); more != 0; more = Thread32Next(snapshot, &thread))
        counts.threads += thread.th32OwnerProcessID == GetCurrentProcessId();
    CloseHandle(snapshot);
    HWND window = nullptr;
    while ((window = FindWindowExA(HWND_MESSAGE, window, nullptr, nullptr)) != nullptr) {
        char name[64]{};
        GetClassNameA(window, name, sizeof name);
        GetWindowThreadProcessId(window, &process);
        counts.windows += process == GetCurrentProcessId() && std::string_view(name).starts_with("ZAB");
    }
    return counts;
}

}  // namespace zab::testbed
