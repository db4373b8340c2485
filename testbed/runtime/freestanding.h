// The little that code without a C library needs: memory from the process heap and two block operations.
#pragma once

#include <stddef.h>
#include <stdint.h>

extern "C" {
__declspec(dllimport) void* GetProcessHeap();
__declspec(dllimport) void* HeapAlloc(void* heap, uint32_t flags, size_t bytes);
__declspec(dllimport) int HeapFree(void* heap, uint32_t flags, void* block);
__declspec(dllimport) int MultiByteToWideChar(uint32_t codePage, uint32_t flags, const char* text, int bytes,
                                              char16_t* out, int units);
__declspec(dllimport) int WideCharToMultiByte(uint32_t codePage, uint32_t flags, const char16_t* text,
                                              int units, char* out, int bytes, const char* unknown,
                                              int* usedUnknown);

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
