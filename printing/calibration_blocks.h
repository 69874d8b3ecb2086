// What lies inside the rulers of a calibration page.
#pragma once

#include "tavio/printing/calibration_sheet.h"

namespace tavio::printing {

// Draws as many of the blocks as there is room for, in the order of importance.
void drawBlocks(const SheetArea& area, CalibrationSheet& sheet);

}  // namespace tavio::printing
