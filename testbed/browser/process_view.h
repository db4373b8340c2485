// What can be seen of the module from outside its code: what the process that it shares holds.
#pragma once

#include <cstdint>

namespace zab::testbed {

/// The committed memory of this process alone, in bytes: what its heaps use and what they hold ready.
std::uint64_t privateBytes();

/// What the system keeps for this process: its handles, its threads, and the windows of the module's classes
/// ("ZAB...") that lie on no screen.
struct ProcessCounts {
    std::uint32_t windows = 0, handles = 0, threads = 0;
    bool operator==(const ProcessCounts&) const = default;
};
ProcessCounts processCounts();

}  // namespace zab::testbed
