// A words element as dots.
#pragma once

#include "tavio/printing/job.h"
#include "tavio/printing/layout.h"
#include "tavio/printing/placed_dots.h"
#include "tavio/printing/result.h"
#include "tavio/printing/ticket.h"

namespace tavio::printing {

// Throws std::bad_alloc.
Expected<PlacedDots, Problem> wordsDots(const element::Words& words, const Layout& layout,
                                        const EncodeOptions& options);

}  // namespace tavio::printing
