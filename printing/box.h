// The box of an element on its ticket.
#pragma once

#include <cstdint>

#include "TavioIpadSDK/sharp/encode_dots.h"
#include "TavioIpadSDK/sharp/fit.h"
#include "tavio/printing/layout.h"
#include "tavio/printing/result.h"
#include "tavio/printing/ticket.h"

namespace tavio::printing {

// On the upright ticket, in dots from its top left corner.
struct Box {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t width = 0;   // 1 or more
    std::int32_t height = 0;  // 1 or more
};

// 0 at the left or the top, 1 in the middle, 2 at the right or the bottom.
int columnOf(Align align);
int rowOf(Align align);

// What the ticket has to the right of and below the place, less the margin. kBadPlace if that is
// nothing, or if the place lies before the ticket's edge; kBadSetting for a negative margin.
Expected<Box, Problem> boxOf(const Layout& layout, Place place, std::int32_t margin);

sharp::FitRules fitRules(const Box& box, const DrawOptions& options);

// Where a picture of this size lies in the box. One that is larger than the box begins at its left
// edge, or its top.
Rectangle alignedIn(const Box& box, Align align, Size size);

// The rectangle's first dot as the printer counts.
sharp::DotsPlace dotsPlaceOf(const Layout& layout, const Rectangle& rectangle);

// The same where the printer's calibration moves it to. The printer may not have such rows or columns.
sharp::DotsPlace calibratedPlaceOf(const Layout& layout, const Rectangle& rectangle);

}  // namespace tavio::printing
