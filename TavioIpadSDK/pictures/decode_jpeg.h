// Decoding JPEG files.
#pragma once

#include <span>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/pictures/stored_picture.h"

namespace tavio::pictures {

// True if the file begins like a JPEG file.
bool looksLikeJpeg(std::span<const Byte> file);

// Grey, RGB, YCbCr, CMYK and YCCK with 8 bits a sample, in one scan, progressive or arithmetic
// coded. Bytes after the end marker are ignored; a file without end marker is cut short. Throws
// std::bad_alloc.
OpenedFile openJpeg(std::span<const Byte> file);

}  // namespace tavio::pictures
