// A source row whose columns have been brought to the target's width, between the two passes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::stretch {

inline constexpr std::size_t kChannels = 4;  // red, green, blue, alpha

// Channels carry so many bits behind the point between the two passes; the rows are then blended and
// rounded a second and last time.
inline constexpr int kFractionBits = 16;

// Channels are kept with this much added, in units of the last of these bits. Half a unit of a
// channel, so that cutting the fraction off a weighted mean of passed rows rounds it; and a margin
// that tells the last pass where it cannot be sure (stretch_blend_rows.cpp).
inline constexpr std::int32_t kHalf = 1 << (kFractionBits - 1);
inline constexpr std::int32_t kMargin = 4;
inline constexpr std::int32_t kAdded = kHalf + kMargin;

inline constexpr std::size_t kBlockColumns = 16;
inline constexpr std::size_t kBlockValues = kChannels * kBlockColumns;

// Sixteen columns, one channel after the other:
//
//   r r r r r r r r r r r r r r r r  g g g ... g  b b b ... b  a a a ... a
//
// whole numbers below 2^24, which fit a float exactly.
struct alignas(64) PassedBlock {
    float values[kBlockValues];
};

struct PassedRow {
    std::vector<PassedBlock>
        blocks;             // the columns behind the row's width in the last one are unused
    bool isOpaque = false;  // all alphas are 255; they are in the blocks nevertheless
};

inline std::size_t blocksOf(std::size_t columns) {
    return (columns + kBlockColumns - 1) / kBlockColumns;
}

inline bool isOpaque(std::span<const UInt32> row) {
    UInt32 all = 0xFF000000;
    for (const UInt32 pixel : row) all &= pixel;
    return all == 0xFF000000;
}

}  // namespace tavio::stretch
