// The dots of a page, as the helper program and the library both compute them.
#pragma once

#include <algorithm>
#include <cstdint>

#include "TavioIpadSDK/sharp/dots.h"
#include "TavioIpadSDK/sharp/fit.h"

namespace tavio::sharp {

// Wider windows, and pages of longer sides, are more than the drawing program holds.
inline constexpr std::int64_t kMaxWindowWidth = 32767;
inline constexpr std::int64_t kMaxPageSide = std::int64_t{1} << 21;

// widthPoints, heightPoints: the page as it is shown, more than 0. resolution: dots per inch, 1 or
// more.
inline Fitted fittedPage(double widthPoints, double heightPoints, std::int32_t resolution,
                         const FitRules& rules) {
    return fitted(widthPoints / 72 * resolution, heightPoints / 72 * resolution, rules);
}

// True if a page of this size can be drawn.
inline bool isDrawable(const Fitted& page) {
    return page.windowWidth <= kMaxWindowWidth &&
           std::max(page.width, page.height) <= kMaxPageSide &&
           page.windowWidth * page.windowHeight <= kMaxDots;
}

}  // namespace tavio::sharp
