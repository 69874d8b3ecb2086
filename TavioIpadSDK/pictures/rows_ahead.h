// Making a picture's rows on another core than the one that uses them.
#pragma once

#include <cstdint>
#include <memory>

#include "TavioIpadSDK/pictures/picture_rows.h"

namespace tavio::pictures {

// The rows of `source`, made ahead by a thread of their own while those before them are being used:
//
//   this thread     |use 0|use 1|use 2|use 3|
//   its own    |make 0|make 1|make 2|make 3|          at most two strips wait
//
// Rows come in strips of `strip` (1 or more) rows, fewer where they are very long; next() gives at
// most what is left of one. What `source` throws is thrown when its turn comes. The thread ends with
// the rows, at the latest when they are destroyed.
//
// A picture of few pixels, for which a thread does not pay, and one for which no thread can be had,
// is given back as it is.
std::unique_ptr<PictureRows> rowsAhead(std::unique_ptr<PictureRows> source, std::int32_t strip);

}  // namespace tavio::pictures
