#include "TavioIpadSDK/intake/page_canvas.h"

#include <cmath>
#include <cstdint>
#include <exception>
#include <utility>

#include "TavioIpadSDK/machine/arithmetic.h"
#include "TavioIpadSDK/platform/canvas.h"

namespace tavio::intake {

std::optional<pictures::Picture> pageOnCanvas(const platform::PdfPage& page) {
    const std::int32_t width = machine::truncateToInt32(std::ceil(page.width));
    const std::int32_t height = machine::truncateToInt32(std::ceil(page.height));
    if (std::int64_t{width} * height > pictures::kMaxPixels) return std::nullopt;
    try {
        platform::Canvas canvas(width, height);
        canvas.placeOpaque(page.picture, page.left, page.top);
        return std::move(canvas).takeSnapshot();
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

}  // namespace tavio::intake
