// Drawing on dots.
#pragma once

#include <cstdint>

#include "TavioIpadSDK/sharp/dots.h"

namespace tavio::sharp {

// All white. Throws std::bad_alloc.
Dots whiteDots(std::int32_t width, std::int32_t height);

// Dots of a picture, from its top left corner.
struct DotArea {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
};

// The area must lie inside the picture.
void blacken(Dots& dots, const DotArea& area);

}  // namespace tavio::sharp
