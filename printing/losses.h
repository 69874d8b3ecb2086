// What of a picture's black dots the encoder leaves out.
#pragma once

#include <cstdint>
#include <span>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::printing {

struct Losses {
    std::int32_t rows = 0;     // rows with black dots that are not printed
    std::int32_t columns = 0;  // columns with black dots that are not printed
};

// bitmapRows: one bit a dot, the bottom row first, each row padded to a multiple of 32 dots; a 0 bit
// is black. Rows that do not fill a band of 8 at the bottom are not printed, nor are the top 8 of a
// logo; of some widths padding blanks up to 4 columns at the right.
Losses lossesOf(std::span<const Byte> bitmapRows, std::int32_t width, std::int32_t height,
                bool isLogo);

}  // namespace tavio::printing
