// Small picture files, made byte by byte.
#pragma once

#include <cstdint>
#include <string>

#include "TavioIpadSDK/machine/bytes.h"
#include "support/bitmaps.h"

namespace tavio::test {

// A BMP file of 24 bits a pixel: black for "X", white for " ".
Bytes colourBmp(const Rows& rows);

// The same, all black.
Bytes blackBmp(std::size_t width, std::size_t height);

// A grey PNG file, not compressed, with the EXIF orientation (1 to 8) in an eXIf chunk. At most
// 255 x 255 pixels.
Bytes greyPng(const Rows& rows, Byte orientation);

}  // namespace tavio::test
