// What a ticket's settings mean for its elements.
#pragma once

#include <cstdint>
#include <string>

#include "TavioIpadSDK/encoder/band_stream.h"
#include "TavioIpadSDK/intake/dot_size.h"
#include "tavio/printing/job.h"
#include "tavio/printing/result.h"
#include "tavio/printing/ticket.h"

namespace tavio::printing {

struct Layout {
    std::string path;               // path command
    std::string orientation;        // orientation command
    bool isLandscape = true;        // what the orientation command says
    std::int32_t resolution = 300;  // dots per inch
    settings::StockSize stock{};    // inches, as it lies in the orientation
    std::int32_t portraitEdge = 0;  // in portrait: the printer's row at the ticket's left edge
    Size ticket;  // of the upright ticket; at most what the calibration says can be printed

    // What is drawn here is printed as many of the printer's rows and columns further: calibration.h.
    std::int32_t movedRows = 0;
    std::int32_t movedColumns = 0;
};

// The only problem is kBadSetting.
Expected<Layout, Problem> layoutOf(const TicketSettings& settings,
                                   const Calibration& calibration = {});

// The place as the encoder wants it.
encoder::Placement placementAt(const Layout& layout, Place place);

intake::SizeRules sizeRules(const Layout& layout, bool isScaled);

// Where something of this size at this place lies on the upright ticket.
Rectangle rectangleAt(const Layout& layout, Place place, Size size);

}  // namespace tavio::printing
