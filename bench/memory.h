// What the process has allocated so far; counted by the operators of memory_bench.cpp.
#pragma once

#include <cstddef>

namespace zabbench {

struct Memory {
    std::size_t allocations = 0;
    std::size_t held = 0, peak = 0;  // bytes
};

extern Memory memory;

}  // namespace zabbench
