// The edges of a calibration page.
#pragma once

#include "tavio/printing/calibration_sheet.h"

namespace tavio::printing {

// Draws corner marks, rulers and slanted lines along all edges of the area, and returns what remains
// free in its middle; its sides may be 0 or less. Rulers count from the ticket's corner.
SheetArea drawRulers(const SheetArea& area, CalibrationSheet& sheet);

}  // namespace tavio::printing
