// The size of a page or photo in printer dots.
//
// Scaled, everything takes the stock's size; else a page takes its own size in inches and a photo
// one dot for each pixel. In any orientation except landscape width and height are swapped (the
// picture itself is not turned: it is resampled to the swapped size).
#pragma once

#include <cstdint>

#include "TavioIpadSDK/settings/stock_table.h"

namespace tavio::intake {

struct DotSize {
    std::int32_t width = 0;
    std::int32_t height = 0;

    bool operator==(const DotSize&) const = default;
};

// The settings that sizes depend on.
struct SizeRules {
    std::int32_t resolution = 300;  // dots per inch
    settings::StockSize stock{};    // as it lies in the orientation
    bool isScaled = false;
    bool isLandscape = true;
};

// For a page whose crop box has this size in points (1/72 inch): points / 72.0 * resolution,
// truncated. At 300 dots per inch 612 x 792 points give 2550 x 3300 dots.
DotSize pageDots(const SizeRules& rules, double widthPoints, double heightPoints);

// For a photo of this size in pixels, as it stands upright.
DotSize photoDots(const SizeRules& rules, std::int32_t width, std::int32_t height);

}  // namespace tavio::intake
