#include "TavioIpadSDK/sharp/tone.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "TavioIpadSDK/sharp/dot_gain_curves.h"

namespace tavio::sharp {
namespace {

// The limit of the contrast's slope: at it, neighbouring values are black and white.
constexpr double kMaxSlope = 1e6;

double slopeOf(double contrast) {
    if (contrast < 0) return 1 + contrast / 100;
    return contrast < 100 ? std::min(kMaxSlope, 100 / (100 - contrast)) : kMaxSlope;
}

double adjusted(double share, const Tone& tone) {
    const double brightness = std::clamp(tone.brightness, -100.0, 100.0);
    const double contrast = std::clamp(tone.contrast, -100.0, 100.0);
    const double gamma = std::clamp(tone.gamma, 0.1, 10.0);
    const double curved = std::pow(share, 1 / gamma);
    const double turned = 0.5 + slopeOf(contrast) * (curved - 0.5);
    return std::clamp(turned + brightness / 100, 0.0, 1.0);
}

Byte interpolated(const DotGainCurve& curve, int value) {
    const auto before = static_cast<std::size_t>(value / kCurveStep);
    const int part = value % kCurveStep;
    if (part == 0) return curve[before];
    const int sum = curve[before] * (kCurveStep - part) + curve[before + 1] * part;
    return static_cast<Byte>((sum + kCurveStep / 2) / kCurveStep);
}

// Diffused, 127 and 128 become chequered patterns, in which wide discs cover more paper than in those
// of any grey beside them.
Byte besideMiddle(Byte value) {
    if (value == 127) return 126;
    return value == 128 ? Byte{129} : value;
}

}  // namespace

Byte lightened(Byte value, std::int32_t dotGain) {
    if (dotGain > kUsualDotGain) {
        const auto curve = static_cast<std::size_t>(dotGain - kUsualDotGain - 1);
        return besideMiddle(interpolated(kDotGainCurves[curve], value));
    }
    const int sum = value * (kUsualDotGain - dotGain) + balancedGrey(value) * dotGain;
    return static_cast<Byte>((sum + kUsualDotGain / 2) / kUsualDotGain);
}

ToneTable toneTable(const Tone& tone) {
    const std::int32_t dotGain = std::clamp(tone.dotGain.value_or(kUsualDotGain), 0, kMaxDotGain);
    ToneTable table;
    for (std::size_t value = 0; value < table.size(); ++value) {
        const double share = adjusted(static_cast<double>(value) / 255, tone);
        const auto grey = static_cast<Byte>(std::lround(share * 255));
        table[value] = lightened(grey, dotGain);
    }
    return table;
}

}  // namespace tavio::sharp
