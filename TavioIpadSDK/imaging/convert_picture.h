// Converting a resampled picture to entries: black and white, one for each pixel.
//
// The two conversions differ on purpose in more than the diffusion:
//
//                     dithered                             threshold
//   0.299 x           green                                red
//   0.587 x           blue                                 green
//   0.114 x           red                                  blue
//   rows converted    all                                  all but the top row, which is white
#pragma once

#include <cstdint>
#include <span>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/pictures/picture.h"
#include "TavioIpadSDK/pictures/picture_rows.h"

namespace tavio::imaging {

enum class Conversion : std::uint8_t { kDithered, kThreshold };

// `image`: upright, at most 2^31 - 1 entries once its rows are padded. A fully transparent pixel is
// all zero, and so black. `entries`: height * paddedWidth(width), overwritten: BLACK or WHITE, the
// bottom row first, each row filled up with WHITE.
//
// A large picture that is in memory as a whole is dithered on both cores. Throws std::bad_alloc.
void convertPicture(const pictures::Picture& image, Conversion conversion, std::span<Byte> entries);

// The same for rows, on the calling thread; a strip of them is in memory at a time. Exceptions of
// the rows are passed on, and rows that end too soon throw DamagedPicture.
void convertRows(pictures::PictureRows& image, Conversion conversion, std::span<Byte> entries);

}  // namespace tavio::imaging
