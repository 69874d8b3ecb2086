// How a page or a picture is fitted into its box, and how dark it is printed.
#pragma once

#include <cstdint>
#include <optional>

#include "TavioIpadSDK/machine/export.h"

namespace tavio::sharp {

enum class Fit : std::uint8_t {
    kShrink,   // its own size; if that is larger than the box, as kContain
    kContain,  // as large as fits into the box; proportions are kept
    kCover,    // covers the box; proportions are kept, and what lies outside the box is cut off
    kStretch,  // the size of the box; proportions are not kept
    kActual,   // its own size, even if that is larger than the box
};

enum class Turn : std::uint8_t {
    kAuto,  // a quarter turn clockwise if the picture is too large for its box (or is fitted to it)
            // and is printed larger that way
    k0,
    k90,  // clockwise
    k180,
    k270,
};

inline constexpr std::int32_t kUsualDotGain = 4;  // dots 1.2 dots wide
inline constexpr std::int32_t kMaxDotGain = 9;    // 1.45

// Values outside the ranges are taken as the nearest inside.
struct TAVIO_API Tone {
    double brightness = 0;  // -100 (all black) to 100 (all white); moves every value
    double contrast = 0;    // -100 (all grey) to 100 (only black and white); turns about mid-grey
    double gamma = 1;       // 0.1 to 10; more than 1 makes the middle lighter

    // Thermal dots are larger than their share of the paper, so that greys print darker than they
    // are. Greys are made lighter by as much: 0 (not at all) to 9, for dots that are 1 + 0.05 times
    // as wide for each step from 4 on, and less in equal steps below (docs/halftone.md). None: what
    // the printer's calibration says, else kUsualDotGain.
    std::optional<std::int32_t> dotGain{};

    bool operator==(const Tone&) const = default;
};

}  // namespace tavio::sharp
