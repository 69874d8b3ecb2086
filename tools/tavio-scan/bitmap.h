// A picture in dots, read from a binary PBM file.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::scan {

// Rows from the top, a byte for each dot: 0 is black, 255 is white.
struct Bitmap {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::vector<Byte> dots;

    bool isBlack(std::int32_t column, std::int32_t row) const {
        const auto index = static_cast<std::size_t>(row) * static_cast<std::size_t>(width) +
                           static_cast<std::size_t>(column);
        return dots[index] == 0;
    }
};

inline constexpr std::int32_t kMaxSide = 1 << 15;

// None if the file is malformed, cut short, or has a side of more than kMaxSide.
std::optional<Bitmap> readBitmap(std::span<const Byte> file);

}  // namespace tavio::scan
