#include "TavioIpadSDK/intake/target_size.h"

#include "TavioIpadSDK/settings/orientation.h"
#include "TavioIpadSDK/settings/settings.h"

namespace tavio::intake {
namespace {

SizeRules presentRules() {
    return {PrinterResolution,
            {StockWidth, StockHeight},
            ImageScaled,
            settings::isLandscape(PrinterOrientation)};
}

}  // namespace

DotSize pageTargetSize(double widthPoints, double heightPoints) {
    return pageDots(presentRules(), widthPoints, heightPoints);
}

DotSize photoTargetSize(std::int32_t width, std::int32_t height) {
    return photoDots(presentRules(), width, height);
}

}  // namespace tavio::intake
