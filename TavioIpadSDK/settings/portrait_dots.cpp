#include "TavioIpadSDK/settings/portrait_dots.h"

#include <cstddef>

namespace tavio::settings {
namespace {

std::optional<std::size_t> columnOf(std::int32_t resolution) {
    switch (resolution) {
        case 200:
            return 0;
        case 300:
            return 1;
        case 600:
            return 2;
        default:
            return std::nullopt;
    }
}

}  // namespace

std::optional<std::int32_t> entryOf(const PortraitDotTable& table, std::int32_t stock,
                                    std::int32_t resolution) {
    const std::optional<std::size_t> column = columnOf(resolution);
    const auto row = static_cast<std::size_t>(stock);  // a negative one becomes too large
    if (!column || row >= table.size()) return std::nullopt;
    return table[row][*column];
}

std::optional<std::int32_t> portraitDotsOf(std::int32_t stock, std::int32_t resolution) {
    return entryOf(kPortraitDots, stock, resolution);
}

}  // namespace tavio::settings
