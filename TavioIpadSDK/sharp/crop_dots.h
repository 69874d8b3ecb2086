// A part of a picture of dots.
#pragma once

#include <cstdint>

#include "TavioIpadSDK/sharp/blacken.h"
#include "TavioIpadSDK/sharp/dots.h"

namespace tavio::sharp {

// The area must lie inside the picture. Throws std::bad_alloc.
Dots croppedDots(const Dots& dots, const DotArea& area);

std::int64_t blackDots(const Dots& dots);

}  // namespace tavio::sharp
