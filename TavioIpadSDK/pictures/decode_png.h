// Decoding PNG files.
#pragma once

#include <span>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/pictures/stored_picture.h"

namespace tavio::pictures {

// True if the file begins like a PNG file.
bool looksLikePng(std::span<const Byte> file);

// All colour types, depths and interlacings; an interlaced picture comes whole. The samples are
// taken as they are stored, without gamma or colour profile; 16 bits are rounded to 8. A wrong
// checksum anywhere means a damaged file. Bytes after the end of the PNG are ignored. Throws
// std::bad_alloc.
OpenedFile openPng(std::span<const Byte> file);

}  // namespace tavio::pictures
