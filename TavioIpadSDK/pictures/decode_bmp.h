// Decoding BMP files.
#pragma once

#include <span>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/pictures/stored_picture.h"

namespace tavio::pictures {

// True if the file begins like a BMP file.
bool looksLikeBmp(std::span<const Byte> file);

// Windows and OS/2 bitmaps of 1, 2, 4, 8, 16, 24 and 32 bits a pixel: plain, with bit masks,
// run-length coded, or with a whole PNG or JPEG file inside. Bitmap arrays, the OS/2 codings for
// fax and 24 bits, and an index outside of the palette are refused. Pixels that run-length coding
// skips are fully transparent. Alpha counts only if the header has a mask for it. A run-length
// coded picture comes whole; the rows of the others come from the top, in whatever order they are
// stored. Throws std::bad_alloc.
OpenedFile openBmp(std::span<const Byte> file);

}  // namespace tavio::pictures
