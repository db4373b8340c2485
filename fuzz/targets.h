// The fuzz targets: functions over bytes that a stranger chose. Built twice from the same table: each with
// libFuzzer as a program of its own, and all into the ordinary tests, which replay every seed and every old
// find.
#pragma once

#include <span>
#include <string_view>

namespace zabfuzz {

struct Target {
    std::string_view name;  // also of its folder below seeds/, and of its dictionary
    /// Throws, or ends the program, when a claim does not hold.
    void (*check)(std::string_view bytes);
};

std::span<const Target> targets() noexcept;

}  // namespace zabfuzz
