// Making a picture's rows ahead, on another core.
#pragma once

#include <cstdint>
#include <memory>

#include "TavioIpadSDK/pictures/picture_rows.h"

namespace tavio::pictures {

// The rows of `source`, made by a thread of its own while earlier rows are being used
// (strips_ahead.h).
//
// Rows are made in strips of `strip` (1 or more) rows, fewer if they are very long; next() gives at
// most the rest of one strip. An exception of `source` is thrown in its place among the rows. The
// thread ends after the last row, or when the rows are destroyed.
//
// A small picture, for which a thread does not pay, is returned as it is, and so is any picture if
// no thread can be started.
std::unique_ptr<PictureRows> rowsAhead(std::unique_ptr<PictureRows> source, std::int32_t strip);

}  // namespace tavio::pictures
