#include "browser/process_view.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <span>

#include <winternl.h>  // behind the one above
#include "binding/wide_win32.h"

namespace zab::testbed {
namespace {

constexpr std::uintptr_t kHandleStep = 4, kLastHandle = 0x8000;

constexpr std::size_t kLongTextBytes = 16 << 10;

/// Shows every block in use of every heap of the process. The heap is locked meanwhile.
template <class Block>
void forEachBlockInUse(Block see) {
    std::array<HANDLE, 64> heaps{};
    const auto count = std::min<std::size_t>(GetProcessHeaps(heaps.size(), heaps.data()), heaps.size());
    for (const HANDLE heap : std::span(heaps).first(count)) {
        HeapLock(heap);
        PROCESS_HEAP_ENTRY entry{};
        while (HeapWalk(heap, &entry))
            if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0)
                see(std::string_view(static_cast<const char*>(entry.lpData), entry.cbData));
        HeapUnlock(heap);
    }
}

/// One text that the system tells of a handle; empty when it tells none.
std::u16string_view told(HANDLE handle, int what, std::span<std::byte> buffer) {
    if (NtQueryObject(handle, static_cast<OBJECT_INFORMATION_CLASS>(what), buffer.data(),
                      static_cast<ULONG>(buffer.size()), nullptr) < 0)
        return {};
    UNICODE_STRING text;  // both answers begin with one
    std::memcpy(&text, buffer.data(), sizeof(text));
    if (text.Buffer == nullptr) return {};
    return {reinterpret_cast<const char16_t*>(text.Buffer), text.Length / sizeof(char16_t)};
}

}  // namespace

std::size_t longTextsThatBeginWith(std::string_view start) {
    std::size_t count = 0;
    forEachBlockInUse(
        [&](std::string_view block) { count += block.size() > kLongTextBytes && block.starts_with(start); });
    return count;
}

std::uint64_t heapBytesInUse() {
    std::uint64_t bytes = 0;
    forEachBlockInUse([&](std::string_view block) { bytes += block.size(); });
    return bytes;
}

std::uint64_t privateBytes() {
    std::uint64_t bytes = 0;
    MEMORY_BASIC_INFORMATION region{};
    for (const char* at = nullptr; VirtualQuery(at, &region, sizeof(region)) != 0;
         at = static_cast<const char*>(region.BaseAddress) + region.RegionSize)
        if (region.State == MEM_COMMIT && region.Type == MEM_PRIVATE) bytes += region.RegionSize;
    return bytes;
}

std::set<void*> unnamedMutexes() {
    constexpr int kName = 1, kType = 2;
    alignas(16) std::array<std::byte, 1024> buffer;
    std::set<void*> found;
    for (std::uintptr_t number = kHandleStep; number <= kLastHandle; number += kHandleStep) {
        const auto handle = reinterpret_cast<HANDLE>(number);
        if (told(handle, kType, buffer) == u"Mutant" && told(handle, kName, buffer).empty())
            found.insert(handle);
    }
    return found;
}

HeldMutex::HeldMutex(void* mutex, End end) : mayEnd_(CreateEventA(nullptr, TRUE, FALSE, nullptr)) {
    const HANDLE holds = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    holder_ = std::thread([this, mutex, end, holds] {
        WaitForSingleObject(mutex, INFINITE);
        SetEvent(holds);
        WaitForSingleObject(mayEnd_, INFINITE);
        if (end == End::givenBack) ReleaseMutex(mutex);
    });
    WaitForSingleObject(holds, INFINITE);
    CloseHandle(holds);
}

void HeldMutex::lets() {
    if (!holder_.joinable()) return;
    SetEvent(mayEnd_);
    holder_.join();
    CloseHandle(mayEnd_);
}

}  // namespace zab::testbed
