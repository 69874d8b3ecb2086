// Dots that are turned, and black for white.
#pragma once

#include "TavioIpadSDK/sharp/dots.h"

namespace tavio::sharp {

// The dots turned clockwise by 0 to 3 quarters. Throws std::bad_alloc.
Dots turnedDots(Dots dots, int quarterTurns);

// Makes black dots white, and white ones black.
void invert(Dots& dots);

}  // namespace tavio::sharp
