// What a printer does to dots, as a person reads it off a printed page (docs/calibration.md).
#pragma once

#include <cstdint>
#include <optional>

#include "TavioIpadSDK/machine/export.h"
#include "tavio/printing/place.h"

namespace tavio::printing {

// In the printer's dots, for the stock and the resolution at which the page was printed. All that is
// drawn here follows it: pages, pictures, codes, words, lines and boxes; plain text follows as far as the
// printer has rows and columns. Printer text, logos, bytes, and what is drawn the classic way, are as they
// are without it. An element's rectangle (job.h) says where it is meant to lie.
struct TAVIO_API Calibration {
    // The number of the wedge that looks even, 0 to 9: how far dots spread. At 4 a dot is as wide as
    // 1.2 dots' room. A picture's own Tone::dotGain comes first.
    std::int32_t tone = 4;

    // Where the ticket's corner really lies: everything is printed as much further right and down, in
    // landscape. Negative values are further left and up: what is black there must leave as many dots
    // at the edge free, because the printer cannot print them (kBadPlace).
    std::int32_t right = 0;
    std::int32_t down = 0;

    // What can really be printed, as it lies in landscape; none: the whole ticket. Boxes, fits and
    // warnings are of what remains of the ticket.
    std::optional<Size> size{};

    bool operator==(const Calibration&) const = default;
};

}  // namespace tavio::printing
