// Resampling a picture in grey to an exact size.
#pragma once

#include <cstdint>
#include <memory>

#include "TavioIpadSDK/sharp/cropped_rows.h"
#include "TavioIpadSDK/sharp/grey_rows.h"

namespace tavio::sharp {

// The rows of `source` resampled to exactly width * height dots, each direction on its own: averaged
// where it shrinks, blended where it grows, as stretch/resampled_rows.h does in four channels, with
// the same values. Of these dots those in the window are delivered, the last row after the source has
// been read to its end.
//
// width, height: 1 to 2^28, as the source's sides; the window lies inside.
std::unique_ptr<GreyRows> resampledGrey(std::unique_ptr<GreyRows> source, std::int32_t width,
                                        std::int32_t height, const Window& window);

// The same for a picture of only black and white: a dot is black if half of it or more is black, and
// else white.
std::unique_ptr<GreyRows> resampledBlackAndWhite(std::unique_ptr<GreyRows> source,
                                                 std::int32_t width, std::int32_t height,
                                                 const Window& window);

// The same for a picture that is enlarged by whole numbers, 1 or more, dot for dot.
std::unique_ptr<GreyRows> enlargedGrey(std::unique_ptr<GreyRows> source, std::int32_t width,
                                       std::int32_t height, const Window& window);

}  // namespace tavio::sharp
