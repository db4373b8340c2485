// The soak: a browser's day that lasts for minutes, under Wine. At the end nothing of the module is left.
//
//     zab_soak [MINUTES [SEED]]
//
// Exit status 1: something is wrong, in a line each.

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "binding/wide_win32.h"
#include "soak/day.h"
// Behind windows.h, which it needs.
#include <tlhelp32.h>

namespace zab::testbed {
namespace {

using Clock = std::chrono::steady_clock;

constexpr double kFaultShare = 0.1;
/// What a heap holds ready of its own accord.
constexpr std::uint64_t kSlackBytes = 1 << 20;
constexpr int kStepsOfAShortDay = 300;

/// The committed memory of this process alone, in bytes: what its heaps use and what they hold ready.
std::uint64_t privateBytes() {
    std::uint64_t bytes = 0;
    MEMORY_BASIC_INFORMATION region{};
    for (const char* at = nullptr; VirtualQuery(at, &region, sizeof(region)) != 0;
         at = static_cast<const char*>(region.BaseAddress) + region.RegionSize)
        if (region.State == MEM_COMMIT && region.Type == MEM_PRIVATE) bytes += region.RegionSize;
    return bytes;
}

/// What the system keeps for this process: its threads, and the windows of the module's classes ("ZAB...") that
/// lie on no screen.
struct ProcessCounts {
    std::uint32_t windows = 0, threads = 0;
    bool operator==(const ProcessCounts&) const = default;
};
ProcessCounts processCounts() {
    ProcessCounts counts;
    DWORD process = 0;
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

/// What a process has for good belongs to nobody: a first, short day brings it.
ProcessCounts countsAfterAShortDay(std::uint32_t seed) {
    {
        Day day(seed, 0);
        for (int step = 0; step < kStepsOfAShortDay; ++step) day.step();
        day.ends();
    }
    return processCounts();
}

int soak(double minutes, std::uint32_t seed) {
    std::printf("%g minutes, seed %u\n", minutes, seed);
    std::fflush(stdout);
    const ProcessCounts before = countsAfterAShortDay(seed);
    const auto begin = Clock::now();
    const auto secondsGone = [&] { return std::chrono::duration<double>(Clock::now() - begin).count(); };
    std::vector<std::string> wrongs;
    {
        Day day(seed, kFaultShare);
        std::uint64_t settled = 0;  // private bytes after the first fifth, with nothing open
        while (secondsGone() < minutes * 60) {
            day.step();
            if (settled != 0 || secondsGone() < minutes * 12) continue;
            day.rests();
            settled = privateBytes();
        }
        day.ends();
        const auto atEnd = privateBytes();
        wrongs = day.wrongs();
        if (atEnd > settled + kSlackBytes) wrongs.emplace_back("the memory has grown");
        std::printf(
            "%llu navigations, %llu transfers, %llu faults; private bytes %llu, after the first fifth %llu\n",
            day.navigations(), day.transfers(), day.faults(), atEnd, settled);
    }
    const ProcessCounts after = processCounts();
    std::printf("%u windows, %u threads; before the day %u, %u\n", after.windows, after.threads, before.windows,
                before.threads);
    if (after != before) wrongs.emplace_back("windows or threads are left");
    for (const auto& wrong : wrongs) std::printf("WRONG: %s\n", wrong.c_str());
    std::fflush(stdout);
    return wrongs.empty() ? 0 : 1;
}

}  // namespace
}  // namespace zab::testbed

int main(int argc, char** argv) {
    const double minutes = argc > 1 ? std::atof(argv[1]) : 5;
    const auto seed = argc > 2 ? static_cast<std::uint32_t>(std::strtoul(argv[2], nullptr, 10))
                               : static_cast<std::uint32_t>(std::random_device{}());
    return zab::testbed::soak(minutes, seed);
}
