// The kernel that finds the white parts of a drawing: most of a page.
#pragma once

#include <cstddef>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/sharp/dot_row.h"

namespace tavio::sharp {

// isWhite[i] is 1 if all pixels of piece i are 0xFFFFFF, else 0.
void markWhite(const PixelRows& pixels, std::size_t pieces, Byte* isWhite);

}  // namespace tavio::sharp
