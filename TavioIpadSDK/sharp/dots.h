// A picture in dots: one bit each.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "TavioIpadSDK/machine/uncleared_bytes.h"

namespace tavio::sharp {

// Pictures of more dots are refused before memory is taken for them.
inline constexpr std::int64_t kMaxDots = std::int64_t{1} << 28;

// Rows from the top, each padded to whole words of 64 bits. A 1 bit is black. A row's leftmost dot is
// the top bit of its first byte; padding bits are 0.
struct Dots {
    std::int32_t width = 0;   // 0 or more
    std::int32_t height = 0;  // 0 or more
    machine::UnclearedBytes bits;

    std::size_t rowBytes() const { return (static_cast<std::size_t>(width) + 63) / 64 * 8; }

    // row: 0 to height - 1.
    std::span<Byte> row(std::int32_t row) {
        return std::span(bits).subspan(static_cast<std::size_t>(row) * rowBytes(), rowBytes());
    }
    std::span<const Byte> row(std::int32_t row) const {
        return std::span(bits).subspan(static_cast<std::size_t>(row) * rowBytes(), rowBytes());
    }

    // Inside the picture only.
    bool isBlack(std::int32_t column, std::int32_t rowFromTop) const {
        const auto at = static_cast<std::size_t>(column);
        return (row(rowFromTop)[at / 8] >> (7 - at % 8) & 1) != 0;
    }
};

}  // namespace tavio::sharp
