// Reading and checking a monochrome bitmap file in memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "TavioIpadSDK/encoder/bitmap_headers.h"

namespace tavio::encoder {

inline constexpr UInt32 IMAGE_MAX_WIDTH = 134217727;
inline constexpr UInt32 IMAGE_MAX_HEIGHT = 2147483647;

// Both headers, every field lowest byte first.
FileHeader readFileHeader(std::span<const Byte, kHeaderSize> file);
InfoHeader readInfoHeader(std::span<const Byte, kHeaderSize> file);

enum class Verdict { kAccepted, kBadDimensions, kNotMonochrome, kIncomplete };

// Checks width, height and bit count, then the colour count, then that a file of `fileSize` bytes
// has all rows. Sets defaults: biClrUsed 0 or 1 becomes 2, and after the two checks of the header
// have passed, 0 pixels per metre becomes 128 in both directions.
Verdict judge(InfoHeader& info, std::size_t fileSize);

// The sizes of a row of one-bit pixels.
struct RowGeometry {
    double DataSize;         // the row's pixel bytes, with a fraction
    UInt32 RowSize;          // the row's bytes, padded to a multiple of 4
    UInt32 PixelArraySize;   // width * height, wrapping
    UInt32 NibblesToIgnore;  // padding in whole half bytes
    UInt32 BytesToIgnore;    // padding in whole bytes
};

//   width      8   12   24   32   64   100
//   RowSize    4    4    4    4    8    16
//   nibbles    6    5    2    0    0     7
//   bytes      3    2    1    0    0     3
RowGeometry rowGeometry(const InfoHeader& info);

}  // namespace tavio::encoder
