// The rows of a stored picture as it is printed: turned.
#pragma once

#include <memory>

#include "TavioIpadSDK/pictures/stored_grey.h"
#include "TavioIpadSDK/sharp/grey_rows.h"

namespace tavio::sharp {

// The EXIF orientation of a picture that has been turned clockwise by quarters, 0 or more, after it
// has been made upright. An orientation outside of 1 to 8 counts as 1.
int turnedOrientation(int orientation, int quarterTurns);

// True if the orientation swaps width and height.
constexpr bool swapsSides(int orientation) {
    return orientation >= 5 && orientation <= 8;
}

// The rows of `source`, turned upright and then by quarters. A picture that has to be turned, or that
// comes whole, is decoded whole when its first row is asked for: one byte a pixel, and while a
// coding that comes whole is decoded, five.
//
// mayUseThreads: a large picture is decoded on a thread of its own.
std::unique_ptr<GreyRows> turnedRows(std::unique_ptr<pictures::StoredGrey> source, int quarterTurns,
                                     bool mayUseThreads);

}  // namespace tavio::sharp
