// A monochrome bitmap file in memory: its 62 bytes of header, then its rows.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::imaging {

using BitmapHeader = std::array<Byte, 62>;

// The header of a one-bit bitmap file whose rows take `rowBytes` bytes, all numbers lowest byte
// first:
//
//   0  "BM"              18  width                34  rowBytes
//   2  rowBytes + 62     22  height (rows         38  0, 0 (pixels per metre)
//   6  0                     run bottom first)    46  0, 0 (colours used, important)
//  10  62 (start of      26  1 (planes)           54  00 00 00 00  colour 0, black
//      the rows)         28  1 (bits a pixel)     58  FF FF FF 00  colour 1, white
//  14  40                30  0 (no compression)
BitmapHeader bitmapHeader(std::int32_t width, std::int32_t height, std::int32_t rowBytes);

// Writes a value as four bytes, lowest first.
void putLowestFirst(std::int32_t value, std::span<Byte, 4> to);

// Header and rows, one after the other. Throws std::bad_alloc.
Bytes bitmapFile(const BitmapHeader& header, std::span<const Byte> rows);

}  // namespace tavio::imaging
