// A source row after the first pass: resampled to the target's width. The second pass resamples the
// rows to the target's height.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::stretch {

inline constexpr std::size_t kChannels = 4;  // red, green, blue, alpha

// The fraction bits of a channel between the two passes. The second pass rounds again, to whole
// numbers.
inline constexpr int kFractionBits = 16;

// The constant that is added to every channel, in units of the last fraction bit: half a unit of a
// channel, so that truncating a weighted mean of passed rows rounds it, and a margin by which the
// second pass finds doubtful results (blend_rows.cpp).
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
    std::vector<PassedBlock> blocks;  // columns past the row's width in the last one are unused
    bool isOpaque = false;            // all alphas are 255; they are in the blocks nevertheless
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
