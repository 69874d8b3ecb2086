// Resampling a picture to the size at which it is printed.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "TavioIpadSDK/pictures/picture_rows.h"

namespace tavio::imaging {

// True if a picture of this size in dots (neither below 0) can be printed: at most 2^28 dots, and
// at most 2^31 - 1 entries after its rows are padded to a multiple of 32.
bool isPrintableSize(std::int32_t width, std::int32_t height);

// The rows at exactly width * height dots, both 1 or more and printable. The picture has pixels.
// The rows of a large picture are made on a thread of their own, on a surface of their own.
//
// surface: see stretch/resampled_rows.h.
std::unique_ptr<pictures::PictureRows> fittedRows(std::unique_ptr<pictures::PictureRows> image,
                                                  std::int32_t width, std::int32_t height,
                                                  std::vector<UInt32>* surface);

}  // namespace tavio::imaging
