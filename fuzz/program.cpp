// One target as a libFuzzer program.
#include <cstddef>
#include <cstdint>

#include "fuzz/targets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    for (const zabfuzz::Target& target : zabfuzz::targets())
        if (target.name == ZAB_FUZZ_TARGET) target.check({reinterpret_cast<const char*>(data), size});
    return 0;
}
