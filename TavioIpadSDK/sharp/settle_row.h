// The kernel that tells what the dots of a row are (settle_dots.h).
#pragma once

#include <cstddef>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/sharp/dot_row.h"

namespace tavio::sharp {

// Settles some pieces of the row in the middle. settled[i] is dot i of the row.
void settleRow(const ThreeRows& rows, std::size_t factor, PieceRange pieces, Byte* settled);

}  // namespace tavio::sharp
