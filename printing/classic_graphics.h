// Making the printer's graphics of a page or a picture the classic way.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"
#include "tavio/printing/classic_drawing.h"
#include "tavio/printing/layout.h"
#include "tavio/printing/result.h"
#include "tavio/printing/ticket.h"

namespace tavio::printing {

// What becomes of a drawing.
struct ClassicOrder {
    Place place;
    BlackAndWhite blackAndWhite = BlackAndWhite::kDithered;
    std::optional<std::int32_t> logo;  // stored as this logo; else printed at the place
    bool mayUseThreads = true;
};

// Appends the commands to `bytes`, the bytes of SendFile or DownloadLogo. Returns the warnings about
// the dots. Problems: kNoDots, kTooLarge, kDamaged, when the picture's rows turn out to be. Throws
// std::bad_alloc.
Expected<std::vector<Warning>, Problem> appendClassic(ClassicDrawing drawing, const Layout& layout,
                                                      const ClassicOrder& order, Bytes& bytes);

}  // namespace tavio::printing
