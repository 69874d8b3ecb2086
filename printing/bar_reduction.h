// How much narrower bars are printed on a printer whose dots spread.
#pragma once

#include "tavio/printing/calibration.h"

namespace tavio::printing {

// In dots: by how much bars of round dots are wider in the mean than their dots' room, 0 or 1/2,
// whichever is nearer. A reader's aperture evens out what is left out of every other row, but not what
// is left out more seldom, which does more harm than such little growth (docs/print-quality.md).
double barReductionFor(const Calibration& calibration);

}  // namespace tavio::printing
