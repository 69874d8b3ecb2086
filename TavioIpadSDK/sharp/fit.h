// The size at which a picture is printed, and how it lies in its box.
#pragma once

#include <cstdint>

#include "TavioIpadSDK/sharp/options.h"

namespace tavio::sharp {

struct FitRules {
    Fit fit = Fit::kShrink;
    Turn turn = Turn::kAuto;
    std::int32_t boxWidth = 0;   // dots, 1 or more
    std::int32_t boxHeight = 0;  // dots, 1 or more
};

// A picture is first turned, then resampled to width x height, then cut to the window.
struct Fitted {
    int quarterTurns = 0;     // clockwise, 0 to 3
    std::int64_t width = 0;   // dots of the whole turned picture, 1 or more
    std::int64_t height = 0;  // dots of the whole turned picture, 1 or more

    // The part that is printed, in dots of the turned picture: all of it but with kCover, where it is
    // the middle of the picture, of the box's size.
    std::int64_t left = 0;
    std::int64_t top = 0;
    std::int64_t windowWidth = 0;
    std::int64_t windowHeight = 0;

    // Dots per dot of the own size, of the direction that shrinks more.
    double scale = 1;

    bool operator==(const Fitted&) const = default;
};

// ownWidth, ownHeight: the picture's own size in dots before it is turned, more than 0; of a page, its
// size in inches times the resolution. Sizes are rounded to the nearest dot, but are at least 1, and
// at most 2^31 - 1.
Fitted fitted(double ownWidth, double ownHeight, const FitRules& rules);

}  // namespace tavio::sharp
