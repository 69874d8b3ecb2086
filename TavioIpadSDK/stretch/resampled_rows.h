// Resampling a picture to an exact size, row by row.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "TavioIpadSDK/pictures/picture_rows.h"

namespace tavio::stretch {

// The rows of `source`, resampled to exactly width * height pixels, each direction on its own. The
// proportions are not kept; nothing is cropped, centred or letter-boxed. In a direction that
// shrinks, every target pixel is the average of the area that it covers; in one that grows, it is
// the bilinear blend between pixel centres. The arithmetic is exact, so the result is the same on
// every machine. A picture that has the size already is unchanged. A picture of one colour keeps
// exactly that colour. Colours stay premultiplied.
//
//   const auto rows = resampledRows(rowsOf(picture), 5100, 6600);
//   for (auto strip = rows->next(31); !strip.empty(); strip = rows->next(31)) print(strip);
//
// next(maxRows) gives exactly maxRows rows, fewer only at the end. It passes on the source's
// exceptions, and throws DamagedPicture if the source ends before its last row. It takes memory for
// the strip that it gives and for a few rows, however high either picture is.
//
// surface: memory for the strip, which the caller can use again for the next picture; it must
// outlive the rows. With a null pointer the rows have their own.
//
// width, height: if either is 0 or less, or the source is empty, there are no rows and the size is
// 0 x 0. Throws std::length_error if either picture has more than kMaxPixels pixels.
std::unique_ptr<pictures::PictureRows> resampledRows(std::unique_ptr<pictures::PictureRows> source,
                                                     std::int32_t width, std::int32_t height,
                                                     std::vector<UInt32>* surface = nullptr);

}  // namespace tavio::stretch
