// Cutting a picture into islands: what no stretch has in common with the rest.
#pragma once

#include <cstdint>
#include <vector>

#include "TavioIpadSDK/sharp/dot_window.h"
#include "TavioIpadSDK/sharp/dots.h"

namespace tavio::sharp {

// A stretch reaches over fewer blank rows than these, since it is 8 rows high.
inline constexpr std::int32_t kMinBlankRows = 7;

// Rectangles without blank edges that contain all black dots, from the top; side by side from the
// left. The picture is cut wherever kMinBlankRows blank rows or `minBlankColumns` blank columns cross
// it, the parts likewise, and so on. So words of a text line become islands of their own, and the
// bands of each can begin where they fit it best. minBlankColumns: 1 or more.
//
// Its time is in proportion to the picture: pictures that could be cut over and over (frames within
// frames) are cut a limited number of times.
std::vector<Rectangle> islandsOf(const Dots& dots, std::int32_t minBlankColumns);

}  // namespace tavio::sharp
