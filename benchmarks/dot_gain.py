"""The curves of dots that grow more than most: TavioIpadSDK/sharp/dot_gain_curves.h."""
import numpy as np

import halftone_measures as measures

STEPS = range(5, 10)
KNOTS = range(0, 256, 17)

HEADER = """\
// Grey values to dither so that paper on which black dots are wide discs looks as light as it should.
// Made by benchmarks/halftones.py --gain, which measures what our error diffusion prints.
#pragma once

#include <array>
#include <cstddef>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::sharp {

inline constexpr int kCurveStep = %d;  // from one value of a curve to the next

// For the grey values 0, %d, %d ... 255. Values between them are interpolated.
using DotGainCurve = std::array<Byte, %d>;

// For discs of %s dots' width: the steps %d to %d of Tone::dotGain.
//
// clang-format off
inline constexpr std::array<DotGainCurve, %d> kDotGainCurves{{
%s
}};
// clang-format on

}  // namespace tavio::sharp
"""


def width(step):
    """Of a dot, in dots."""
    return 1 + 0.05 * step


def needed(flats, step):
    """The values that are right for the knots; flats[v] are the dots of grey v."""
    white = measures.white_of_neighbourhoods(width(step) / 2)
    seen = [255 * float(measures.neighbourhoods(flat) @ white) for flat in flats]
    return np.interp(KNOTS, np.maximum.accumulate(seen), np.arange(256)).round().astype(int)


def table(flats):
    values = " | ".join(map(str, KNOTS))
    rows = [" | ".join(map(str, needed(flats, step))) for step in STEPS]
    return "\n".join([f"| dot gain | width | {values} |", "|---" * (len(KNOTS) + 2) + "|",
                      *(f"| {step} | {width(step):.2f} | {row} |" for step, row in zip(STEPS, rows))])


def write_header(path, flats):
    curves = [needed(flats, step) for step in STEPS]
    widths = ", ".join(f"{width(step):.2f}" for step in STEPS[:-1])
    rows = "\n".join("    {" + ", ".join(map(str, curve)) + "}," for curve in curves)
    path.write_text(HEADER % (KNOTS.step, KNOTS[1], KNOTS[2], len(KNOTS),
                              f"{widths} and {width(STEPS[-1]):.2f}", STEPS[0], STEPS[-1],
                              len(STEPS), rows))
