// The orientation in a picture file's EXIF block.
#pragma once

#include <span>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::pictures {

// `exif`: the block from its byte order mark ("II" or "MM") on, as in a PNG's eXIf and in a JPEG's
// APP1 after "Exif\0\0".
//
// Returns the orientation of the main picture, 1 to 8; 1 if it is missing or malformed.
int exifOrientation(std::span<const Byte> exif);

}  // namespace tavio::pictures
