// The kernel that turns 8 pixel rows into columns of 8 dots.
#pragma once

#include <cstddef>
#include <span>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::encoder {

inline constexpr std::size_t kBandRows = 8;

// columns[c] = pixel column c of the band, its top bit the first row, a 1 bit for every 0 bit of
// the rows.
//
// rows: 8 rows of rowSize bytes in the order of a bitmap file, so the band's first row comes last;
// each row's leftmost pixel in its first byte's top bit. columns: the first 8 * rowSize bytes are
// overwritten.
void transposeBand(std::span<const Byte> rows, std::size_t rowSize, std::span<Byte> columns);

}  // namespace tavio::encoder
