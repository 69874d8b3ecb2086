// Stretching a picture to an exact size.
#pragma once

#include <cstdint>
#include <vector>

#include "TavioIpadSDK/platform/picture.h"

namespace tavio::platform {

// Overwrites `out` with the upright form of `picture`, stretched to exactly width * height pixels:
// each direction on its own, nothing kept in proportion, cropped, centred or letter-boxed. Where a
// direction shrinks, every target pixel is the area average of what it covers; where it grows, the
// bilinear blend between pixel centres. Integer arithmetic only: the result is the same on every
// machine. A picture already of that size comes through bit for bit; a picture of one colour stays
// exactly that colour; colours stay premultiplied.
//
// width, height: 0 or more, width * height at most kMostPixels. When either is 0, or the picture
// has no pixels, `out` becomes empty. `out` keeps its memory from call to call.
void stretch(const Picture& picture, std::int32_t width, std::int32_t height,
             std::vector<UInt32>& out);

}  // namespace tavio::platform
