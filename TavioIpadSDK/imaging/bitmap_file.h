// The monochrome bitmap file image: packing entries into bits, and its 62-byte header.
#pragma once

#include <cstdint>
#include <span>

#include "TavioIpadSDK/imaging/state.h"

namespace tavio::imaging {

// ---- Over module state --------------------------------------------------------------------------

// Packs mDataArray into mRawBitmapData and sets nRead.
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

// Writes a value as four bytes, lowest first, to BMPHeader[index : index + 4]; does nothing when
// these are not all inside.
void BMPHeader_Int(std::int32_t intToReverse, std::int32_t index);

// ---- Pure ---------------------------------------------------------------------------------------

// packed[i] = the eight entries from 8 i on, for all whole groups of eight; entries are BLACK or
// WHITE. The first entry fills the two top bits and the eighth is dropped: printed pictures depend
// on exactly this.
//
//   bit    7 6 5 4 3 2 1 0
//   entry  0 0 1 2 3 4 5 6          1,0,1,0,1,0,1,0 gives D5; 0,0,0,0,0,0,0,1 gives 00
void packEntries(std::span<const Byte> entries, std::span<Byte> packed);

}  // namespace tavio::imaging
