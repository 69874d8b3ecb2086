// Lines and boxes as dots.
#pragma once

#include "tavio/printing/layout.h"
#include "tavio/printing/placed_dots.h"
#include "tavio/printing/result.h"
#include "tavio/printing/ticket.h"

namespace tavio::printing {

// Problems: kBadSetting for lengths and thicknesses below 1, kBadPlace, kTooLarge. Throw
// std::bad_alloc.
Expected<PlacedDots, Problem> lineDots(const element::Line& line, const Layout& layout);
Expected<PlacedDots, Problem> boxDots(const element::Box& box, const Layout& layout);

}  // namespace tavio::printing
