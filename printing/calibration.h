// What a printer does to dots, as a person reads it off a printed page (docs/calibration.md).
#pragma once

#include <cstdint>
#include <optional>

#include "TavioIpadSDK/machine/export.h"
#include "tavio/printing/place.h"

namespace tavio::printing {

// In the printer's dots, for the stock and the resolution at which the page was printed. The classic
// way of drawing, printer text, logos and bytes are not changed by it.
struct TAVIO_API Calibration {
    // The number of the wedge that looks even, 0 to 9: how far dots spread. At 4 a dot is as wide as
    // 1.2 dots' room.
    std::int32_t tone = 4;

    // Where the ticket's corner really lies: everything is printed as much further right and down.
    // Negative values are further left and up. In landscape.
    std::int32_t right = 0;
    std::int32_t down = 0;

    // What can really be printed, as it lies in landscape; none: the whole ticket.
    std::optional<Size> size{};

    bool operator==(const Calibration&) const = default;
};

}  // namespace tavio::printing
