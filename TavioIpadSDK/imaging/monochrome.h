// Converts the resampled picture to one black or white entry per pixel: dithered, or by threshold.
//
// The two conversions differ on purpose in more than the diffusion:
//
//                     dithered                             threshold
//   0.299 x           green                                red
//   0.587 x           blue                                 green
//   0.114 x           red                                  blue
//   rows converted    all                                  all but the top row, which is white
//   write position    module-wide `k`                      its own
//
// Either leaves mWidth, mHeight, mDataWidth, mDataArrayLength and mDataArray filled, and
// mRawBitmapData sized but not filled (state.h). `image` is the resampled picture: upright, at most
// 2^31 - 1 entries once its rows are padded. A fully transparent pixel is all zero, and so black.
// They throw std::bad_alloc if there is no memory for the working arrays.
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
