// Image preparation's module-wide state. Beneath it everything is pure functions over spans.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/machine/uncleared_bytes.h"

namespace tavio::imaging {

inline constexpr int BLACK = 0;
inline constexpr int WHITE = 1;
inline constexpr int DITHERTHRESHOLD = 128;  // a grey value below it is black

// One pixel, by value. The colour fields hold rotated source channels: see TransformToRGBA.
struct ArgbColor {
    Byte Alpha = 0;
    Byte Red = 0;
    Byte Green = 0;
    Byte Blue = 0;

    bool operator==(const ArgbColor&) const = default;
};

// ---- Of one print: overwritten by each, kept until the next -------------------------------------

// Size of the fitted picture in pixels, 0 or more. Written by the two conversions; read by
// populate_bmpheader.
extern std::int32_t mWidth;
extern std::int32_t mHeight;

// mWidth rounded up to a multiple of 32. Written by the conversions, read by MakeItMonochrome.
extern std::int32_t mDataWidth;

// mDataWidth * mHeight. Written by the conversions, read by createRawMonochromeData.
extern std::int32_t mDataArrayLength;

// mDataArray[0 : mDataArrayLength], one entry a pixel, BLACK or WHITE; rows bottom first, each
// mDataWidth entries, filled up with WHITE. Written by the conversions, read by
// createRawMonochromeData.
extern machine::UnclearedBytes mDataArray;

// mRawBitmapData[0 : mDataArrayLength / 8], one bit a pixel, rows bottom first. Sized by the
// conversions, filled by createRawMonochromeData, read by PrintBMP.
extern machine::UnclearedBytes mRawBitmapData;

// Where the dithered conversion writes next in mDataArray; ends at mDataArrayLength. Written by
// MakeItMonochrome only.
extern UInt32 k;

// Bytes packed into mRawBitmapData: mDataArrayLength / 8. Written by createRawMonochromeData, read
// by populate_bmpheader and PrintBMP.
extern std::int32_t nRead;

// The header of the bitmap file image. Written by populate_bmpheader, read by PrintBMP.
extern std::array<Byte, 62> BMPHeader;

// The photo route puts the picture file here before it is decoded; PrintBMP then replaces it with
// the bitmap file image that it hands to ParseBMP, and it stays. None before the first print.
extern std::shared_ptr<const Bytes> myImageData;

// ---- Kept from print to print -------------------------------------------------------------------

// The drawing surface that PrintBMP opens and never closes: fitted rows are drawn on it, a strip at
// a time (those of a large picture are drawn ahead by another thread, on surfaces of its own). Used
// again by the next print, so a thousand prints take no more memory than two. Written by PrintBMP
// during a print.
extern std::vector<UInt32> openSurface;

// ---- Declared for the application; never assigned or read here ----------------------------------

extern Byte* Pixels;
extern Byte* Planes;
extern Byte* CompBuffer;
extern Byte* BitBuffer;

}  // namespace tavio::imaging
