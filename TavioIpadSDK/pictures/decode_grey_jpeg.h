// Decoding JPEG files in grey.
#pragma once

#include <span>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/pictures/stored_grey.h"

namespace tavio::pictures {

// The luminance of a grey or YCbCr file, as it is stored: the others of openJpeg() have neither a source
// nor a reason. The picture can be decoded at 1/2, 1/4 and 1/8 of its size. Throws std::bad_alloc.
OpenedGrey openGreyJpeg(std::span<const Byte> file);

}  // namespace tavio::pictures
