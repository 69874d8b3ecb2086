// The kernel that turns pixels into black and white entries by a fixed threshold.
#pragma once

#include <cstdint>
#include <span>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::imaging {

// `pixels` are whole rows of `width` words, as in Picture, top row first. They become as many rows
// of paddedWidth(width) entries, the last row first, as the entries of a picture are kept:
//
//   pixels          entries
//   row 0           row 2, WHITE up to a multiple of 32
//   row 1           row 1, WHITE ...
//   row 2           row 0, WHITE ...
//
// An entry is BLACK where isBlack(red, green, blue), WHITE otherwise. All of `entries` is
// overwritten; it has exactly that size. A width of 0 or less has no rows. The caller keeps a
// picture's top row white.
void thresholdRows(std::span<const UInt32> pixels, std::int32_t width, std::span<Byte> entries);

}  // namespace tavio::imaging
