// The results of the last print, for tests.
#pragma once

#include <string>

#include "support/bitmaps.h"

namespace tavio::test {

inline constexpr const char* kNoPictureNotice = "Error - Invalid Image width/height/depth.";

// The black and white picture of the last print, the top row first.
Rows printedRows();

// "width x height" of the last print in dots.
std::string printedSize();

// True if graphics bytes were sent since the test began.
bool graphicsWereSent();

}  // namespace tavio::test
