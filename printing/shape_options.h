// Lines, frames and filled boxes.
#pragma once

#include <cstdint>

#include "TavioIpadSDK/machine/export.h"

namespace tavio::printing {

enum class LineDirection : std::uint8_t { kAcross, kDown };  // on the upright ticket

//   ticket.line({200, 0}, 900, {.thickness = 4});
//   ticket.line({0, 1400}, 600, {.direction = LineDirection::kDown, .dash = 20});
struct TAVIO_API LineOptions {
    LineDirection direction = LineDirection::kAcross;
    std::int32_t thickness = 3;  // dots, 1 or more
    std::int32_t dash = 0;       // dots of each dash and of each gap; 0 for a solid line

    bool operator==(const LineOptions&) const = default;
};

struct TAVIO_API BoxOptions {
    std::int32_t thickness = 3;  // of the frame, which lies inside the box; dots, 1 or more
    bool isFilled = false;       // black inside

    bool operator==(const BoxOptions&) const = default;
};

}  // namespace tavio::printing
