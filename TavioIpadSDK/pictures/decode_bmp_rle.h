// Run-length coded pixels of a BMP file.
#pragma once

#include <span>
#include <string>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/pictures/decode_bmp_header.h"

namespace tavio::pictures {

// Fills `pixels` (header.width * header.height, all 0 before, row 0 at the top) from header.data.
// Returns an empty text, or the reason why the data is refused: it writes outside of the picture,
// uses an index outside of the palette, or ends before its end mark. The end mark may be missing
// only if the header states the size of the data.
std::string readBmpRuns(const BmpHeader& header, std::span<UInt32> pixels);

}  // namespace tavio::pictures
