// Making the printer's graphics of a page or a picture the sharp way.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"
#include "tavio/printing/box.h"
#include "tavio/printing/encoded_parts.h"
#include "tavio/printing/layout.h"
#include "tavio/printing/result.h"
#include "tavio/printing/sharp_drawing.h"
#include "tavio/printing/ticket.h"

namespace tavio::printing {

// What becomes of a drawing.
struct SharpOrder {
    Box box;  // that it was drawn for
    DrawOptions options;
    std::optional<std::int32_t> logo;  // stored as this logo; else printed in the box
    bool mayUseThreads = true;
};

// Appends the commands to `bytes`. Problems: kBadPlace if the printer cannot name the place of all
// dots, kTooLarge, kDamaged and kHelperFailed, when the rows turn out to be. Throws std::bad_alloc.
Expected<EncodedParts, Problem> appendSharp(SharpDrawing drawing, const Layout& layout,
                                            const SharpOrder& order, Bytes& bytes);

}  // namespace tavio::printing
