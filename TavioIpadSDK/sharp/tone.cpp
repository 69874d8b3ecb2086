#include "TavioIpadSDK/sharp/tone.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

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

}  // namespace

ToneTable toneTable(const Tone& tone) {
    ToneTable table;
    for (std::size_t value = 0; value < table.size(); ++value) {
        const double share = adjusted(static_cast<double>(value) / 255, tone);
        const auto grey = static_cast<Byte>(std::lround(share * 255));
        table[value] = tone.balancesDotGain ? balancedGrey(grey) : grey;
    }
    return table;
}

}  // namespace tavio::sharp
