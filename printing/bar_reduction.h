// How much narrower bars are printed on a printer whose dots spread.
#pragma once

#include "tavio/printing/calibration.h"

namespace tavio::printing {

// By how many dots bars of round dots are wider in the mean than their dots' room: 0 or more.
double barGrowthFor(const Calibration& calibration);

// By how many dots bars are to be narrower: 0 or 1/2, whichever is nearer to their growth. A reader's aperture evens out what is left out of every other row, but not what
// is left out more seldom, which does more harm than such little growth (docs/print-quality.md).
double barReductionFor(const Calibration& calibration);

}  // namespace tavio::printing
