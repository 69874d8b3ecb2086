#include "TavioIpadSDK/platform/canvas.h"

#include <algorithm>
#include <cassert>
#include <cstddef>

namespace tavio::platform {

Canvas::Canvas(std::int32_t width, std::int32_t height) {
    surface_.width = std::max(width, 0);
    surface_.height = std::max(height, 0);
    surface_.pixels.assign(
        static_cast<std::size_t>(surface_.width) * static_cast<std::size_t>(surface_.height), 0);
}

void Canvas::placeOpaque(const Picture& picture, std::int32_t left, std::int32_t top) {
    // In 64 bits, since the sums may be beyond 32 bits.
    const std::int64_t firstColumn = std::max<std::int64_t>(left, 0);
    const std::int64_t endColumn =
        std::min<std::int64_t>(std::int64_t{left} + picture.width, surface_.width);
    const std::int64_t firstRow = std::max<std::int64_t>(top, 0);
    const std::int64_t endRow =
        std::min<std::int64_t>(std::int64_t{top} + picture.height, surface_.height);
    if (firstColumn >= endColumn) return;
    assert(picture.orientation == 1);
    assert(picture.pixels.size() ==
           static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height));

    for (std::int64_t row = firstRow; row < endRow; ++row) {
        const UInt32* from =
            picture.pixels.data() + (row - top) * picture.width + (firstColumn - left);
        UInt32* to = surface_.pixels.data() + row * surface_.width + firstColumn;
        std::copy_n(from, endColumn - firstColumn, to);
    }
}

}  // namespace tavio::platform
