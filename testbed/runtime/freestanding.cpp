#include "freestanding.h"

extern "C" void* memcpy(void* to, const void* from, size_t bytes) {
    auto* target = static_cast<volatile char*>(to);
    for (size_t i = 0; i < bytes; ++i) target[i] = static_cast<const char*>(from)[i];
    return to;
}
