// Turning a picture so that it stands upright.
#pragma once

#include <cstddef>
#include <cstdint>

#include "TavioIpadSDK/machine/export.h"
#include "TavioIpadSDK/pictures/picture.h"

namespace tavio::pictures {

// The size of the upright picture: swapped for orientations 5 to 8.
TAVIO_API std::int32_t uprightWidth(const Picture& picture);
TAVIO_API std::int32_t uprightHeight(const Picture& picture);

// The same picture with its pixels turned so that its orientation is 1. No pixel changes its value.
// An upright picture is moved, not copied.
TAVIO_API Picture upright(Picture picture);

// An upright view of a picture whose pixels stay where they are.
//
// The upright pixel at (column, row) is origin[column * columnStep + row * rowStep], for columns 0
// to width - 1 and rows 0 to height - 1. The picture must outlive the view, unchanged. A picture
// without pixels has a view of size 0 x 0.
struct TAVIO_API UprightView {
    std::int32_t width = 0;
    std::int32_t height = 0;
    const UInt32* origin = nullptr;
    std::ptrdiff_t columnStep = 0;
    std::ptrdiff_t rowStep = 0;
};

// An orientation outside of 1 to 8 counts as 1.
TAVIO_API UprightView uprightView(const Picture& picture);

}  // namespace tavio::pictures
