#include "tavio/printing/bar_reduction.h"

#include <algorithm>
#include <cmath>

namespace tavio::printing {
namespace {

constexpr double kWidthPerTone = 0.05;  // calibration.h
constexpr double kReduction = 0.5;

// How far a column of touching discs, one dot apart, reaches from its middle: the mean of
// sqrt(radius^2 - y^2) over y from -1/2 to 1/2. radius: 1/2 or more.
double meanReach(double radius) {
    const double half = 0.5;
    return half * std::sqrt(radius * radius - half * half) +
           radius * radius * std::asin(half / radius);
}

}  // namespace

double barGrowthFor(const Calibration& calibration) {
    const double radius = (1 + calibration.tone * kWidthPerTone) / 2;
    return std::max(2 * meanReach(radius) - 1, 0.0);
}

double barReductionFor(const Calibration& calibration) {
    return barGrowthFor(calibration) < kReduction / 2 ? 0 : kReduction;
}

}  // namespace tavio::printing
