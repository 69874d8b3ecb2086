#include "TavioIpadSDK/intake/page_canvas.h"

#include <cmath>
#include <cstdint>
#include <utility>

#include "TavioIpadSDK/machine/arithmetic.h"
#include "TavioIpadSDK/platform/canvas.h"

namespace tavio::intake {

std::optional<pictures::Picture> pageOnCanvas(const platform::PdfPage& page) {
    const std::int32_t width = machine::truncateToInt32(std::ceil(page.width));
    const std::int32_t height = machine::truncateToInt32(std::ceil(page.height));
    if (std::int64_t{width} * height > pictures::kMaxPixels) return std::nullopt;
    platform::Canvas canvas(width, height);
    canvas.placeOpaque(page.picture, page.left, page.top);
    return std::move(canvas).takeSnapshot();
}

}  // namespace tavio::intake
