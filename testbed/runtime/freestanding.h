// The little that code without a C library needs: memory and copying. Natively the library of the
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
}

template <class T>
T* allocate(size_t count) {
    constexpr uint32_t kZeroed = 8;
    return static_cast<T*>(HeapAlloc(GetProcessHeap(), kZeroed, count * sizeof(T)));
}

inline void deallocate(void* block) {
    if (block != nullptr) HeapFree(GetProcessHeap(), 0, block);
}

#else
#define ENTRY extern "C" __attribute__((visibility("default")))

#include <cstdlib>
#include <cstring>

template <class T>
T* allocate(size_t count) {
    return static_cast<T*>(std::calloc(count, sizeof(T)));
}

inline void deallocate(void* block) { std::free(block); }
#endif
