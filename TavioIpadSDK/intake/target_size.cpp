#include "TavioIpadSDK/intake/target_size.h"

#include "TavioIpadSDK/machine/arithmetic.h"
#include "TavioIpadSDK/settings/settings.h"

namespace tavio::intake {
namespace {

using machine::truncateToInt32;

DotSize oriented(DotSize size) {
    return PrinterOrientation == "<LM>" ? size : DotSize{size.height, size.width};
}

DotSize stockSize() {
    const double resolution = PrinterResolution;
    return {truncateToInt32(resolution * StockWidth), truncateToInt32(resolution * StockHeight)};
}

std::int32_t pointsToDots(double points) {
    return truncateToInt32((points / 72.0) * static_cast<double>(PrinterResolution));
}

}  // namespace

DotSize pageTargetSize(double widthPoints, double heightPoints) {
    if (ImageScaled) return oriented(stockSize());
    return oriented({pointsToDots(widthPoints), pointsToDots(heightPoints)});
}

DotSize photoTargetSize(std::int32_t width, std::int32_t height) {
    return oriented(ImageScaled ? stockSize() : DotSize{width, height});
}

}  // namespace tavio::intake
