// The width of a code's modules, measured in its dots.
#pragma once

#include "tools/tavio-scan/bitmap.h"
#include "tools/tavio-scan/part.h"

namespace tavio::scan {

// In dots; 0 if the part has no bars. Bars and gaps are taken to be whole numbers of modules, of which
// the narrowest are one. If the code has wide and narrow ones only, whose ratio may be anything, only
// the narrow ones count. Modules of fewer than 2 dots are not told apart well.
double moduleWidth(const Bitmap& bitmap, const Part& part, Along along, bool isWideAndNarrow);

}  // namespace tavio::scan
