// Stretching a picture to an exact size, row by row.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "TavioIpadSDK/pictures/picture_rows.h"

namespace tavio::stretch {

// The rows of `source`, stretched to exactly width * height pixels: each direction on its own,
// nothing kept in proportion, cropped, centred or letter-boxed. Where a direction shrinks, every
// target pixel is the area average of what it covers; where it grows, the bilinear blend between
// pixel centres. The arithmetic is exact: the result is the same on every machine. A picture that
// has that size already comes through bit for bit; a picture of one colour stays exactly that
// colour; colours stay premultiplied.
//
//   const auto rows = resampledRows(rowsOf(picture), 5100, 6600);
//   for (auto strip = rows->next(31); !strip.empty(); strip = rows->next(31)) print(strip);
//
// next(most) gives exactly as many rows as are asked for, fewer only at the end. It passes on what
// the source throws, and throws DamagedPicture when the source ends before its last row. It keeps
// the strip that it gives and what belongs to a few rows in memory, however high either picture is.
//
// surface: memory that the strip is drawn on, its owner's to keep and to use again for the next
// picture; must outlive the rows. Where there is none the rows have their own.
//
// width, height: when either is 0 or less, or the source is empty, there are no rows and the size is
// 0 x 0. Throws std::length_error when either picture has more than kMaxPixels pixels.
std::unique_ptr<pictures::PictureRows> resampledRows(std::unique_ptr<pictures::PictureRows> source,
                                                     std::int32_t width, std::int32_t height,
                                                     std::vector<UInt32>* surface = nullptr);

}  // namespace tavio::stretch
