// What the kernels that settle dots work on: pixels of a drawing, and what is known of a row of dots.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::sharp {

// Dots that are looked at together. All forms of the kernels work on whole pieces.
inline constexpr std::size_t kPiece = 32;

struct PieceRange {
    std::size_t first = 0;
    std::size_t end = 0;
};

// The pixels of a row of dots: `factor` rows of them, the first of each `stride` after that above.
// A pixel is 0x00RRGGBB; its top byte has no meaning.
struct PixelRows {
    const std::uint32_t* top = nullptr;
    std::size_t stride = 0;
    std::size_t factor = 1;

    PixelRows fromPiece(std::size_t piece) const {
        return {top + piece * kPiece * factor, stride, factor};
    }
};

// What is known of each dot of a row from the values of its own pixels (pixel_value.h). Dot i is at
// i + 1: a dot before the row and one after it are as those beside them. Values of pixels between
// are those that are neither 0 nor 255.
struct DotRow {
    explicit DotRow(std::size_t pieces)
        : sums(pieces * kPiece + 2),
          lowest(sums.size()),
          highest(sums.size()),
          darkest(sums.size()),
          lightest(sums.size()),
          isWhite(pieces) {}

    std::vector<std::int16_t> sums;
    Bytes lowest;
    Bytes highest;
    Bytes darkest;   // of the pixels between; 255 if there are none
    Bytes lightest;  // of the pixels between; 0 if there are none
    Bytes isWhite;   // by piece: 1 if all pixels are pure white, else 0
};

// A row of dots between those above and below.
using ThreeRows = std::array<const DotRow*, 3>;

}  // namespace tavio::sharp
