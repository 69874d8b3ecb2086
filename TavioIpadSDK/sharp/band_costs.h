// The kernel that tells how many bytes a band takes wherever it begins.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace tavio::sharp {

inline constexpr int kMaxBandRows = 8;

// Rows of dots in words of 64, the leftmost dot in the top bit: word w of row y is
// words[kBlockStride * w + y]. A block has kBlockRows rows on which bands begin, and the rows below
// them that these bands reach.
inline constexpr std::size_t kBlockRows = 64;
inline constexpr std::size_t kBlockStride = kBlockRows + kMaxBandRows;

// The price of a stretch's commands in bytes may be from 8 to 30.
inline constexpr int kMaxPrice = 30;

// costs[kBlockRows * (height - 1) + y] = the bytes of a band of rows [y, y + height), for each height
// from minHeight to kMaxBandRows and each y below rowCount.
//
// A stretch costs its columns and `price` bytes for its commands, so a blank run is left out if it is
// longer than that. In other words, each black column is paid together with the `price` columns after
// it, and no column is paid twice: the cost is the number of dots of the band's black columns after each
// has been drawn out to the right by `price`.
//
// words, ors: kBlockStride words for each word of a row; `ors` is overwritten. costs: kMaxBandRows *
// kBlockRows numbers; those of rows from rowCount on may be overwritten. rowCount: up to kBlockRows.
void bandCosts(std::span<const std::uint64_t> words, std::size_t rowCount, int price, int minHeight,
               std::span<std::uint64_t> ors, std::span<std::uint64_t> costs);

}  // namespace tavio::sharp
