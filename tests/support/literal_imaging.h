// Image preparation once more, slow and to the letter: every pixel on its own, in double.
#pragma once

#include <cstdint>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/pictures/picture.h"

namespace tavio::test {

// The black (0) and white (1) entries of an upright picture, rows bottom first, each padded to a
// multiple of 32 with white.
Bytes ditherLiterally(const pictures::Picture& picture);
Bytes thresholdLiterally(const pictures::Picture& picture);  // the top row is white

// The one-bit bitmap file that these entries are packed into.
Bytes bitmapFileLiterally(const Bytes& entries, std::int32_t width, std::int32_t height);

}  // namespace tavio::test
