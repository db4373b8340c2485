// What can be seen of the module from outside its code: what the process that it shares holds.
#pragma once

#include <cstdint>

namespace zab::testbed {

/// The committed memory of this process alone, in bytes: what its heaps use and what they hold ready.
std::uint64_t privateBytes();

}  // namespace zab::testbed
