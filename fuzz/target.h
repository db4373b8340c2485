// A fuzz target: one function over bytes that a stranger chose. Built twice from the same lines: with libFuzzer
// as a program of its own, and without it into the ordinary tests, which replay every seed and every old find.
//
//     ZAB_FUZZ_TARGET(hls) { checkHls(bytes); }        // in hls_fuzz.cpp; seeds in seeds/hls/
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace zabfuzz {

using Check = void (*)(std::span<const std::uint8_t> bytes);

struct Target {
    const char* name;
    Check check;
    const Target* next;
};

/// Head of the list of targets that this program was linked with.
inline const Target*& targets() {
    static const Target* head = nullptr;
    return head;
}

struct Registration {
    Registration(const char* name, Check check) : target{name, check, targets()} { targets() = &target; }
    Target target;
};

}  // namespace zabfuzz

#ifdef ZAB_LIBFUZZER
#define ZAB_FUZZ_TARGET(name)                                                           \
    static void fuzz_##name(std::span<const std::uint8_t> bytes);                       \
    extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) { \
        fuzz_##name({data, size});                                                      \
        return 0;                                                                       \
    }                                                                                   \
    static void fuzz_##name(std::span<const std::uint8_t> bytes)
#else
#define ZAB_FUZZ_TARGET(name)                                                   \
    static void fuzz_##name(std::span<const std::uint8_t> bytes);               \
    static const zabfuzz::Registration registration_##name(#name, fuzz_##name); \
    static void fuzz_##name(std::span<const std::uint8_t> bytes)
#endif
