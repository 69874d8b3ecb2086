// Bitmaps from texts, for tests.
#pragma once

#include <string>
#include <vector>

#include "tools/tavio-scan/bitmap.h"

namespace tavio::scan {

// A row of dots per text, all of the same length: '#' is black.
inline Bitmap bitmapOf(const std::vector<std::string>& rows) {
    Bitmap bitmap{
        static_cast<std::int32_t>(rows.front().size()), static_cast<std::int32_t>(rows.size()), {}};
    for (const std::string& row : rows) {
        for (const char dot : row) bitmap.dots.push_back(dot == '#' ? 0 : 255);
    }
    return bitmap;
}

}  // namespace tavio::scan
