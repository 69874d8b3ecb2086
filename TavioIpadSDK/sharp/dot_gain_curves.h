// Grey values to dither so that paper on which black dots are wide discs looks as light as it should.
// Made by benchmarks/halftones.py --gain, which measures what our error diffusion prints.
#pragma once

#include <array>
#include <cstddef>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::sharp {

inline constexpr int kCurveStep = 17;  // from one value of a curve to the next

// For the grey values 0, 17, 34 ... 255. Values between them are interpolated.
using DotGainCurve = std::array<Byte, 16>;

// For discs of 1.25, 1.30, 1.35, 1.40 and 1.45 dots' width: the steps 5 to 9 of Tone::dotGain.
//
// clang-format off
inline constexpr std::array<DotGainCurve, 5> kDotGainCurves{{
    {0, 14, 37, 61, 84, 101, 120, 137, 154, 171, 185, 199, 213, 227, 241, 255},
    {0, 21, 47, 72, 93, 111, 129, 146, 162, 178, 191, 204, 217, 229, 242, 255},
    {0, 28, 59, 86, 103, 121, 138, 154, 171, 183, 196, 207, 219, 231, 243, 255},
    {0, 37, 70, 94, 113, 130, 146, 162, 177, 188, 200, 211, 222, 233, 244, 255},
    {0, 46, 86, 103, 122, 139, 154, 171, 182, 193, 203, 214, 224, 234, 245, 255},
}};
// clang-format on

}  // namespace tavio::sharp
