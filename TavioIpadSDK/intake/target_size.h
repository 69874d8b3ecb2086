// The size of a page or photo in printer dots.
//
// With ImageScaled set, everything takes the stock's size; else a page takes its own size in inches
// and a photo one dot for each pixel. In any orientation except exactly "<LM>" width and height are
// swapped (the picture itself is not turned: it is resampled to the swapped size).
#pragma once

#include <cstdint>

namespace tavio::intake {

struct DotSize {
    std::int32_t width = 0;
    std::int32_t height = 0;

    bool operator==(const DotSize&) const = default;
};

// For a page whose crop box has this size in points (1/72 inch): points / 72.0 * PrinterResolution,
// truncated. At 300 dots per inch 612 x 792 points give 2550 x 3300 dots.
DotSize pageTargetSize(double widthPoints, double heightPoints);

// For a photo of this size in pixels, as it stands upright.
DotSize photoTargetSize(std::int32_t width, std::int32_t height);

}  // namespace tavio::intake
