// How much narrower bars are printed on a printer whose dots spread.
#pragma once

#include "tavio/printing/calibration.h"

namespace tavio::printing {

// In dots, 0 to 1: by how much a bar of round dots is wider in the mean than its dots' room.
// Of a calibration whose tone is 0 to 9.
double barReductionFor(const Calibration& calibration);

}  // namespace tavio::printing
