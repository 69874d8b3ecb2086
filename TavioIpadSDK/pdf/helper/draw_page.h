// A page of a document, drawn on an image surface.
#pragma once

#include <cstdint>

#include "TavioIpadSDK/pdf/answer.h"
#include "TavioIpadSDK/pdf/helper/open_page.h"

namespace tavio::pdf_helper {

struct DrawnPage {
    pdf::AnswerHeader header;
    Surface surface;  // header.columns by header.rows, flushed, CAIRO_FORMAT_ARGB32; present
                      // exactly when header.outcome is kDrawn
};

// Draws a page, from 1, as it would be printed.
DrawnPage drawPage(const OpenedDocument& document, std::int32_t page, double maxPointsPerSide);

}  // namespace tavio::pdf_helper
