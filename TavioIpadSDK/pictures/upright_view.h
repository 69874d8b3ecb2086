// Reading a picture as it stands upright, without turning its pixels.
#pragma once

#include <cstddef>
#include <cstdint>

#include "TavioIpadSDK/platform/picture.h"

namespace tavio::platform {

// The upright pixel at (column, row) is origin[column * columnStep + row * rowStep], for columns 0
// to width - 1 and rows 0 to height - 1. Valid as long as the picture and unchanged; a picture
// without pixels has a view of size 0 x 0.
struct UprightView {
    std::int32_t width = 0;
    std::int32_t height = 0;
    const UInt32* origin = nullptr;
    std::ptrdiff_t columnStep = 0;
    std::ptrdiff_t rowStep = 0;
};

// An orientation outside of 1 to 8 counts as 1.
UprightView uprightView(const Picture& picture);

}  // namespace tavio::platform
