// Codes in a picture, by the scanner library.
#pragma once

#include <string>

#include "tools/tavio-scan/bitmap.h"

namespace tavio::scan {

// The text of the answer (tools/common/scan_answer.h). Throws std::bad_alloc, and what the library throws.
std::string foundCodes(const Bitmap& bitmap);

}  // namespace tavio::scan
