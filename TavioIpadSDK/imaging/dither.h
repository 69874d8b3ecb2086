// Error diffusion with the weights 7, 3, 5 and 1 sixteenths, in integer arithmetic.
//
// Three of its traits look like slips and are not: the printed picture depends on them. The colour
// fields hold rotated source channels, the errors of the second and third field are crossed, and a
// pixel in column 1 passes nothing to column 0 of the next row.
#pragma once

#include <cstdint>
#include <span>

#include "TavioIpadSDK/imaging/state.h"

namespace tavio::imaging {

// `value` clamped to 0 to 255.
constexpr Byte ToByte(int value) {
    return static_cast<Byte>(value < 0 ? 0 : value > 255 ? 255 : value);
}

// Black (Alpha, 0, 0, 0) or white (Alpha, 255, 255, 255), by the grey value of the three fields.
ArgbColor TransformPixel(ArgbColor pixel);

// OriginalData[i] = the record of word RawData[i] (picture.h tells its bits), for all i: Alpha
// keeps its place, Red takes the source green, Green the source blue, Blue the source red. Both
// spans hold width * height elements. Returns the last record written, all zero when there are no
// pixels.
ArgbColor TransformToRGBA(std::span<const UInt32> RawData, std::span<ArgbColor> OriginalData,
                          std::int32_t width, std::int32_t height);

// Passes the error of the pixel at column x, row y (0-based, inside the picture) to up to four
// neighbours: right 7/16, below left 3/16 (only where x - 1 > 0), below 5/16, below right 1/16. The
// error is originalPixel - transformedPixel per field; a neighbour's Green receives the error of
// Blue and its Blue that of Green. Each product is shifted right by 4, rounding towards minus
// infinity, and each field is clamped after every addition. `original` holds width * height
// records.
void DitherFloydSteinberg(std::span<ArgbColor> original, ArgbColor originalPixel,
                          ArgbColor transformedPixel, std::int32_t x, std::int32_t y,
                          std::int32_t width, std::int32_t height);

// Turns all width * height records black or white, row by row from the top, each row from the left,
// diffusing the errors.
void diffuse(std::span<ArgbColor> original, std::int32_t width, std::int32_t height);

}  // namespace tavio::imaging
