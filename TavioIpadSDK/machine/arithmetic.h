// Integer arithmetic whose every case is defined.
#pragma once

#include <cstdint>
#include <limits>

namespace tavio::machine {

// The sum in two's complement: it wraps around on overflow.
constexpr std::int32_t wrappingAdd(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

// The difference in two's complement.
constexpr std::int32_t wrappingSubtract(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

// The value truncated towards zero and clamped to the range of 32 bits; 0 for NaN.
constexpr std::int32_t truncateToInt32(double value) {
    using Limits = std::numeric_limits<std::int32_t>;
    if (value != value) return 0;
    if (value >= static_cast<double>(Limits::max())) return Limits::max();
    if (value <= static_cast<double>(Limits::min())) return Limits::min();
    return static_cast<std::int32_t>(value);
}

}  // namespace tavio::machine
