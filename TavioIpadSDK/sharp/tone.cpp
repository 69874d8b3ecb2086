#include "TavioIpadSDK/sharp/tone.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace tavio::sharp {
namespace {

// The limit of the contrast's slope: at it, neighbouring values are black and white.
constexpr double kMaxSlope = 1e6;

// Of discs 1.2 dots wide: the area of one, and the area that two neighbours share, in dots.
constexpr double kDiscArea = 1.1310;
constexpr double kSharedArea = 0.0900;

double slopeOf(double contrast) {
    if (contrast < 0) return 1 + contrast / 100;
    return std::min(kMaxSlope, 100 / std::max(100 - contrast, 1e-9));
}

// The share of white paper, 0 to 1, that the tone asks for.
double adjusted(double share, const Tone& tone) {
    const double brightness = std::clamp(tone.brightness, -100.0, 100.0);
    const double contrast = std::clamp(tone.contrast, -100.0, 100.0);
    const double gamma = std::clamp(tone.gamma, 0.1, 10.0);
    const double curved = std::pow(share, 1 / gamma);
    const double turned = 0.5 + slopeOf(contrast) * (curved - 0.5);
    return std::clamp(turned + brightness / 100, 0.0, 1.0);
}

// The share of white dots with which paper is seen as white as `share`.
//
// Up to half of all dots error diffusion keeps black ones apart, beyond that white ones, so that the
// number of black neighbours grows by two for each black dot more.
double balanced(double share) {
    const double black = 1 - share;
    const double apart = black / kDiscArea;
    const double touching = (black - 2 * kSharedArea) / (kDiscArea - 4 * kSharedArea);
    return 1 - std::clamp(std::max(apart, touching), 0.0, 1.0);
}

}  // namespace

ToneTable toneTable(const Tone& tone) {
    ToneTable table;
    for (std::size_t value = 0; value < table.size(); ++value) {
        const double wanted = adjusted(static_cast<double>(value) / 255, tone);
        const double share = tone.balancesDotGain ? balanced(wanted) : wanted;
        table[value] = static_cast<Byte>(std::lround(share * 255));
    }
    return table;
}

}  // namespace tavio::sharp
