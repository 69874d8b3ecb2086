// The monochrome bitmap file image: packing entries into bits, and its 62-byte header.
#pragma once

#include <cstdint>

namespace tavio::imaging {

// Packs mDataArray into mRawBitmapData and sets nRead (state.h).
void createRawMonochromeData();

// Rewrites all 62 bytes of BMPHeader from nRead, mWidth and mHeight: the header of a one-bit bitmap
// file, all numbers lowest byte first.
//
//   0  "BM"              18  mWidth               34  nRead (size of the rows)
//   2  nRead + 62        22  mHeight (rows        38  0, 0 (pixels per metre)
//   6  0                      run bottom first)   46  0, 0 (colours used, important)
//  10  62 (start of      26  1 (planes)           54  00 00 00 00  colour 0, black
//      the rows)         28  1 (bits a pixel)     58  FF FF FF 00  colour 1, white
//  14  40                30  0 (no compression)
void populate_bmpheader();

// Writes a value as four bytes, lowest first, to BMPHeader[index : index + 4]; does nothing if
// these are not all inside.
void BMPHeader_Int(std::int32_t intToReverse, std::int32_t index);

}  // namespace tavio::imaging
