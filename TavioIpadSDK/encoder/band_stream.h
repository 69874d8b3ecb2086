// The first pass: a bitmap becomes one graphics command per band of 8 rows.
//
//   stream := opening  band  { position  band }
//   band   := "<G" columns ">" columns * byte
//   position := "<RC" row "," column ">"
//
// One graphics byte is one column of 8 dots, its top bit the band's first row. A band has as many
// columns as a padded row has pixels; the bottom rows that do not fill a band are dropped.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "TavioIpadSDK/encoder/bitmap_reader.h"
#include "TavioIpadSDK/platform/bytes.h"

namespace tavio::encoder {

// Where a job's graphics go. Landscape: a band's row advances down the picture, its column stays.
// Portrait: the column advances, the row is counted back from the portrait dot width.
struct Placement {
    bool isLandscape = true;
    std::int32_t originalx = 0;     // the job's row
    std::int32_t originaly = 0;     // the job's column
    std::int32_t portraitDots = 0;  // printable width in portrait
};

struct BandStream {
    Bytes bytes;               // empty when the picture has no whole band: the opening goes too
    std::string lastPosition;  // the position made for the band after the last; "" without a band
    std::int32_t rx = 0;       // row and column of that position, the job's place without a band
    std::int32_t ry = 0;
};

// Builds the stream behind `opening` (the bytes it begins with, may be empty).
//
// pixels: RowSize * height bytes, the bottom row first, each row's leftmost pixel in its first
// byte's top bit; a 0 bit prints. Throws StreamTooLong beyond 2^31 - 1 bytes and std::bad_alloc.
BandStream buildBandStream(std::span<const Byte> pixels, const RowGeometry& row, UInt32 height,
                           std::span<const Byte> opening, const Placement& placement);

// Turns 8 pixel rows into the columns of one band.
//
// rows: 8 * RowSize bytes as they lie in the file, so the band's first row comes last. band:
// 8 * RowSize bytes, overwritten; band[c] is pixel column c. Padding is blanked by whole half
// bytes, and in the picture's top row (the first of its top band) by another rule than in all
// others:
//
//   whole padding bytes        blank in every row
//   half byte left of these    blank in the top row when NibblesToIgnore is odd, in every other row
//                              when BytesToIgnore is not 0 - also where that half byte holds pixels
//   padding bits left of that  kept: a 0 bit there prints
void fillBand(std::span<const Byte> rows, const RowGeometry& row, bool isTopBand,
              std::span<Byte> band);

}  // namespace tavio::encoder
