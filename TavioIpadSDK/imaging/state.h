// Image preparation's module-wide variables. Only the operations that pass them on to pure
// functions include this file. Writers and readers are files; a test may look at anything.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/machine/uncleared_bytes.h"

namespace tavio::imaging {

// ---- Of one print: overwritten by each, kept until the next -------------------------------------

// Width of the resampled picture in pixels, 0 or more.
// Written by: monochrome.cpp
// Read by: monochrome.cpp, bitmap_file.cpp
extern std::int32_t mWidth;

// Height of the resampled picture in pixels, 0 or more.
// Written by: monochrome.cpp
// Read by: monochrome.cpp, bitmap_file.cpp
extern std::int32_t mHeight;

// Entries of one row: paddedWidth(mWidth), a multiple of 32.
// Written by: monochrome.cpp
// Read by: monochrome.cpp
extern std::int32_t mDataWidth;

// Entries of the picture: mDataWidth * mHeight, a multiple of 32.
// Written by: monochrome.cpp
// Read by: monochrome.cpp, bitmap_file.cpp
extern std::int32_t mDataArrayLength;

// mDataArray[0 : mDataArrayLength], one entry a pixel, BLACK or WHITE (entries.h); rows bottom
// first, each mDataWidth entries, filled up with WHITE.
// Written by: monochrome.cpp
// Read by: bitmap_file.cpp
extern machine::UnclearedBytes mDataArray;

// mRawBitmapData[0 : mDataArrayLength / 8], one bit a pixel, rows bottom first. The conversions
// size it, createRawMonochromeData fills it.
// Written by: monochrome.cpp, bitmap_file.cpp
// Read by: print_bmp.cpp
extern machine::UnclearedBytes mRawBitmapData;

// Entries of mDataArray that the dithered conversion has written: mDataArrayLength after its end.
// The threshold conversion leaves it alone.
// Written by: monochrome.cpp
// Read by: nobody
extern UInt32 k;

// Bytes packed into mRawBitmapData: mDataArrayLength / 8.
// Written by: bitmap_file.cpp
// Read by: bitmap_file.cpp, print_bmp.cpp
extern std::int32_t nRead;

// The header of the bitmap file image.
// Written by: bitmap_file.cpp
// Read by: bitmap_file.cpp, print_bmp.cpp
extern std::array<Byte, 62> BMPHeader;

// The photo route puts the picture file here before it is decoded; PrintBMP then replaces it with
// the bitmap file image that it hands to ParseBMP, and it stays. None before the first print.
// Written by: print_bmp.cpp, ../intake/image_to_bmp.cpp
// Read by: print_bmp.cpp, ../intake/image_to_bmp.cpp
extern std::shared_ptr<const Bytes> myImageData;

// ---- Kept from print to print -------------------------------------------------------------------

// The drawing surface that PrintBMP opens and never closes: resampled rows are drawn on it, a strip
// at a time (those of a large picture are drawn ahead by another thread, on surfaces of its own).
// One word a pixel, as in Picture. The next print uses the same memory, so a thousand prints take
// no more than two.
// Written by: print_bmp.cpp
// Read by: print_bmp.cpp
extern std::vector<UInt32> openSurface;

// ---- Declared for the application; the library never uses them ----------------------------------

// Null pointers at first.
// Written by: the application
// Read by: the application
extern Byte* Pixels;
extern Byte* Planes;
extern Byte* CompBuffer;
extern Byte* BitBuffer;

}  // namespace tavio::imaging
