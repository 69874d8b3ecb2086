#include "TavioIpadSDK/intake/dot_size.h"

#include "TavioIpadSDK/machine/arithmetic.h"

namespace tavio::intake {
namespace {

using machine::truncateToInt32;

DotSize oriented(const SizeRules& rules, DotSize size) {
    return rules.isLandscape ? size : DotSize{size.height, size.width};
}

DotSize stockDots(const SizeRules& rules) {
    const double resolution = rules.resolution;
    return {truncateToInt32(resolution * rules.stock.width),
            truncateToInt32(resolution * rules.stock.height)};
}

std::int32_t pointsToDots(const SizeRules& rules, double points) {
    return truncateToInt32((points / 72.0) * static_cast<double>(rules.resolution));
}

}  // namespace

DotSize pageDots(const SizeRules& rules, double widthPoints, double heightPoints) {
    if (rules.isScaled) return oriented(rules, stockDots(rules));
    return oriented(rules, {pointsToDots(rules, widthPoints), pointsToDots(rules, heightPoints)});
}

DotSize photoDots(const SizeRules& rules, std::int32_t width, std::int32_t height) {
    return oriented(rules, rules.isScaled ? stockDots(rules) : DotSize{width, height});
}

}  // namespace tavio::intake
