// The monochrome bitmap file image: packing entries into bits, and its 62-byte header.
#pragma once

#include <cstdint>

namespace tavio::imaging {

// Packs mDataArray into mRawBitmapData and sets nRead (state.h).
void createRawMonochromeData();

// Rewrites all 62 bytes of BMPHeader from nRead, mWidth and mHeight, as bitmap_image.h describes.
void populate_bmpheader();

// Writes a value as four bytes, lowest first, to BMPHeader[index : index + 4]; does nothing if
// these are not all inside.
void BMPHeader_Int(std::int32_t intToReverse, std::int32_t index);

}  // namespace tavio::imaging
