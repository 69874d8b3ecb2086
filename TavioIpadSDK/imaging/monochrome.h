// Converts the resampled picture to one black or white entry per pixel, as convert_picture.h
// describes: dithered, which also moves the module-wide write position `k`, or by threshold.
//
// Either leaves mWidth, mHeight, mDataWidth, mDataArrayLength and mDataArray filled, and
// mRawBitmapData sized but not filled (state.h). `image` is the resampled picture: upright, at most
// 2^31 - 1 entries once its rows are padded. They throw std::bad_alloc if there is no memory for
// the working arrays.
//
// The resampled picture is given either as a whole, and then large ones are converted on both
// cores, or row by row. Exceptions of the rows are passed on, and rows that end too soon throw
// DamagedPicture; then the working arrays have the picture's size, but no contents.
#pragma once

#include <cstdint>
#include <span>

#include "TavioIpadSDK/imaging/argb_color.h"
#include "TavioIpadSDK/pictures/picture.h"
#include "TavioIpadSDK/pictures/picture_rows.h"

namespace tavio::imaging {

void CreateTransformedImage(const pictures::Picture& image);  // dithered
void CreateTransformedImage(pictures::PictureRows& image);
void ConvertToMonochrome(const pictures::Picture& image);  // threshold
void ConvertToMonochrome(pictures::PictureRows& image);

// The last step of the dithered conversion, for records that are black or white already: width *
// height of them, top row first, of the picture that the working arrays are sized for. Fills
// mDataArray with all rows, bottom row first, and takes `k` from 0 to mDataArrayLength.
void MakeItMonochrome(std::span<const ArgbColor> originalData, std::int32_t width,
                      std::int32_t height);

}  // namespace tavio::imaging
