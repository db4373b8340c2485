// Doubles from outside, as whole numbers.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

namespace zab {

/// `value` cut toward zero; beyond 64 bits the nearer limit. What is not a number has no whole part.
inline std::optional<std::int64_t> wholePart(double value) noexcept {
    using Limits = std::numeric_limits<std::int64_t>;
    constexpr double kBeyond = 9223372036854775808.0;  // 2^63, the first that does not fit
    if (std::isnan(value)) return std::nullopt;
    if (value >= kBeyond) return Limits::max();
    if (value < -kBeyond) return Limits::min();
    return static_cast<std::int64_t>(value);
}

}  // namespace zab
