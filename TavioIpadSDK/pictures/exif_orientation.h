// The orientation that a camera wrote down beside its picture.
#pragma once

#include <span>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::pictures {

// `exif`: the block from its byte order mark ("II" or "MM") on, as a PNG's eXIf holds it and a
// JPEG's APP1 holds it behind "Exif\0\0".
//
// Returns the orientation of the main picture, 1 to 8; 1 when there is none or anything about it is
// malformed.
int exifOrientation(std::span<const Byte> exif);

}  // namespace tavio::pictures
