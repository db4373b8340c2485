// The little that code without a C library needs: memory and two block operations. Natively the library of the
// machine has it, so that a sanitizer sees every block.
#pragma once

#include <stddef.h>
#include <stdint.h>

#ifdef _WIN32
#define ENTRY extern "C" __declspec(dllexport)

extern "C" {
__declspec(dllimport) void* GetProcessHeap();
__declspec(dllimport) void* HeapAlloc(void* heap, uint32_t flags, size_t bytes);
__declspec(dllimport) int HeapFree(void* heap, uint32_t flags, void* block);
void* memcpy(void* to, const void* from, size_t bytes);
void* memset(void* to, int value, size_t bytes);
}

template <class T>
T* allocate(size_t count) {
    constexpr uint32_t kZeroed = 8;
    return static_cast<T*>(HeapAlloc(GetProcessHeap(), kZeroed, count * sizeof(T)));
}

inline void deallocate(void* block) {
    if (block != nullptr) HeapFree(GetProcessHeap(), 0, block);
}

template <template <class T, T...> class Of, uint32_t Count>
using Counted = __make_integer_seq<Of, uint32_t, Count>;

#else
#define ENTRY extern "C" __attribute__((visibility("default")))

#include <cstdlib>
#include <cstring>
#include <utility>

template <class T>
T* allocate(size_t count) {
    return static_cast<T*>(std::calloc(count, sizeof(T)));
}

inline void deallocate(void* block) { std::free(block); }

template <template <class T, T...> class Of, uint32_t... Numbers>
Of<uint32_t, Numbers...> ofEach(std::integer_sequence<uint32_t, Numbers...>);
template <template <class T, T...> class Of, uint32_t Count>
using Counted = decltype(ofEach<Of>(std::make_integer_sequence<uint32_t, Count>{}));
#endif
