// Rectangles in a bitmap.
#pragma once

#include <cstdint>
#include <vector>

#include "tools/tavio-scan/bitmap.h"

namespace tavio::scan {

// Columns [left, left + width), rows [top, top + height), within the bitmap.
struct Part {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;

    bool operator==(const Part&) const = default;
};

enum class Along { kRows, kColumns };  // how a code is read

// The part without its blank edges; empty if all of it is blank.
Part trimmed(const Bitmap& bitmap, Part part);

// The part of a linear code, with all lines beside it that are the same: its bars at their full length.
Part withWholeBars(const Bitmap& bitmap, Part part, Along along);

// The part of a linear code, with the bars at both ends that are at most `maxGap` dots away.
Part withAllBars(const Bitmap& bitmap, Part part, Along along, std::int32_t maxGap);

bool doOverlap(const Part& left, const Part& right);

// The rectangles around black dots that are near each other: those in the same or in neighbouring
// squares of so many dots.
std::vector<Part> blotsOf(const Bitmap& bitmap, std::int32_t square);

// The dots of the part, with as many white dots around it.
Bitmap cutOut(const Bitmap& bitmap, const Part& part, std::int32_t margin);

}  // namespace tavio::scan
