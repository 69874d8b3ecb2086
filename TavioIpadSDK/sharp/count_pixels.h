// The kernel that tells what pixels are in each dot of a drawing.
#pragma once

#include "TavioIpadSDK/sharp/dot_row.h"

namespace tavio::sharp {

// Counts the pixels of some pieces of a row. `pixels` begins with the first of these pieces; its
// `factor` is at most 4. All fields of `row` are written, `isWhite` with 0.
void countPixels(const PixelRows& pixels, PieceRange pieces, DotRow& row);

}  // namespace tavio::sharp
