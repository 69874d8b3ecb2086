#include "TavioIpadSDK/sharp/fit.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tavio::sharp {
namespace {

struct Sides {
    double width = 0;
    double height = 0;
};

constexpr double kMaxSide = std::numeric_limits<std::int32_t>::max();

std::int64_t toDots(double side) {
    return std::llround(std::clamp(side, 1.0, kMaxSide));
}

// The factor at which the picture just lies inside the box.
double containing(const Sides& own, const Sides& box) {
    return std::min(box.width / own.width, box.height / own.height);
}

// The factor at which the picture just covers the box.
double covering(const Sides& own, const Sides& box) {
    return std::max(box.width / own.width, box.height / own.height);
}

// Half a dot beyond the box is rounded away.
bool fitsAsItIs(const Sides& own, const Sides& box) {
    return own.width < box.width + 0.5 && own.height < box.height + 0.5;
}

Sides turned(const Sides& sides) {
    return {sides.height, sides.width};
}

bool isBetterTurned(const Sides& own, const Sides& box, Fit fit) {
    const bool keepsItsSize = fit == Fit::kActual || (fit == Fit::kShrink && fitsAsItIs(own, box));
    if (keepsItsSize)
        return fit == Fit::kActual && !fitsAsItIs(own, box) && fitsAsItIs(turned(own), box);
    return containing(turned(own), box) > containing(own, box);
}

int quarterTurnsOf(Turn turn, const Sides& own, const Sides& box, Fit fit) {
    if (turn == Turn::kAuto) return isBetterTurned(own, box, fit) ? 1 : 0;
    return static_cast<int>(turn) - static_cast<int>(Turn::k0);
}

Sides scaledTo(const Sides& own, const Sides& box, Fit fit) {
    double scale = 1;
    switch (fit) {
        case Fit::kActual:
            break;
        case Fit::kShrink:
            if (!fitsAsItIs(own, box)) scale = containing(own, box);
            break;
        case Fit::kContain:
            scale = containing(own, box);
            break;
        case Fit::kCover:
            scale = covering(own, box);
            break;
        case Fit::kStretch:
            return box;
    }
    return {own.width * scale, own.height * scale};
}

}  // namespace

Fitted fitted(double ownWidth, double ownHeight, const FitRules& rules) {
    const Sides box{static_cast<double>(rules.boxWidth), static_cast<double>(rules.boxHeight)};
    Sides own{ownWidth, ownHeight};
    Fitted result;
    result.quarterTurns = quarterTurnsOf(rules.turn, own, box, rules.fit);
    if (result.quarterTurns % 2 == 1) own = turned(own);
    const Sides size = scaledTo(own, box, rules.fit);
    result.scale = std::min(size.width / own.width, size.height / own.height);
    result.width = toDots(size.width);
    result.height = toDots(size.height);
    result.windowWidth = result.width;
    result.windowHeight = result.height;
    if (rules.fit == Fit::kCover) {
        result.windowWidth = std::min<std::int64_t>(result.width, rules.boxWidth);
        result.windowHeight = std::min<std::int64_t>(result.height, rules.boxHeight);
        result.left = (result.width - result.windowWidth) / 2;
        result.top = (result.height - result.windowHeight) / 2;
    }
    return result;
}

}  // namespace tavio::sharp
