// Error diffusion with the weights 7, 3, 5 and 1 sixteenths, in integer arithmetic: one pixel, and
// the records it works on.
//
// Three of its rules look like mistakes. Applications and printers rely on their bytes:
//
//   rotated channels    Red holds the source green, Green the source blue, Blue the source red
//   crossed errors      a neighbour's Green receives the error of Blue, its Blue that of Green
//   missing neighbour   a pixel in column 1 passes nothing to column 0 of the next row
//
// A picture is diffused in raster order: TransformPixel and DitherFloydSteinberg for one pixel
// after the other, from the top row down, each row from the left. error_diffusion.h does that for
// rows.
#pragma once

#include <cstdint>
#include <span>

#include "TavioIpadSDK/imaging/argb_color.h"
#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::imaging {

// `value` clamped to 0 to 255.
constexpr Byte ToByte(int value) {
    return static_cast<Byte>(value < 0 ? 0 : value > 255 ? 255 : value);
}

// Black (Alpha, 0, 0, 0) or white (Alpha, 255, 255, 255), by the grey value of the three fields.
ArgbColor TransformPixel(ArgbColor pixel);

// OriginalData[i] = the record of word RawData[i], for all i. Both spans hold width * height
// elements. Returns the last record written, all zero when there are no pixels.
//
//   field   bits of the word
//   Alpha   24 to 31, the source alpha
//   Red      8 to 15, the source green
//   Green   16 to 23, the source blue        the word 44332211 (hexadecimal) gives
//   Blue     0 to  7, the source red         Alpha 44, Red 22, Green 33, Blue 11
ArgbColor TransformToRGBA(std::span<const UInt32> RawData, std::span<ArgbColor> OriginalData,
                          std::int32_t width, std::int32_t height);

// Passes the error of the pixel at column x, row y (0-based, inside the picture) to up to four
// neighbours: right 7/16, below left 3/16 (only where x - 1 > 0), below 5/16, below right 1/16. The
// error is originalPixel - transformedPixel, field by field, and crossed as described above. Each
// product is shifted right by 4, rounding towards minus infinity, and each field is clamped after
// every addition. `original` holds width * height records.
void DitherFloydSteinberg(std::span<ArgbColor> original, ArgbColor originalPixel,
                          ArgbColor transformedPixel, std::int32_t x, std::int32_t y,
                          std::int32_t width, std::int32_t height);

// The entries of `records`, whole rows of `width` (1 or more) records, top row first. The entries
// hold the LAST row first, each row paddedWidth(width) entries, filled up with WHITE; all of
// `entries` is overwritten. A record is black by its grey value, as for TransformPixel.
void makeEntries(std::span<const ArgbColor> records, std::int32_t width, std::span<Byte> entries);

}  // namespace tavio::imaging
