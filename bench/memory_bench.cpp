// Operators new and delete that count. In a file of their own: where the compiler could see through them, it
// would take free() for the wrong partner of new.

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>

#include "bench/memory.h"

zabbench::Memory zabbench::memory;

namespace {

using zabbench::memory;

void* counted(void* block) noexcept {
    if (block == nullptr) return block;
    ++memory.allocations;
    memory.held += malloc_usable_size(block);
    memory.peak = std::max(memory.peak, memory.held);
    return block;
}

void uncounted(void* block) noexcept {
    if (block != nullptr) memory.held -= malloc_usable_size(block);
    std::free(block);
}

}  // namespace

void* operator new(std::size_t size) {
    if (void* block = counted(std::malloc(size))) return block;
    throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return counted(std::malloc(size)); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return counted(std::malloc(size)); }
void operator delete(void* block) noexcept { uncounted(block); }
void operator delete(void* block, std::size_t) noexcept { uncounted(block); }
