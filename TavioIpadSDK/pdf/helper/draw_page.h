// A page of a document, drawn on an image surface.
#pragma once

#include <cstdint>
#include <memory>

#include <cairo.h>

#include "TavioIpadSDK/pdf/answer.h"

namespace tavio::pdf_helper {

struct SurfaceDeleter {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
using Surface = std::unique_ptr<cairo_surface_t, SurfaceDeleter>;

struct DrawnPage {
    pdf::AnswerHeader header;
    Surface surface;  // header.columns by header.rows, flushed, CAIRO_FORMAT_ARGB32; present
                      // exactly when header.outcome is kDrawn
};

// Draws a page, from 1, of the document open as file descriptor `descriptor`, and closes it. It is
// drawn as it would be printed: an annotation or form field that is not marked for printing is left
// out, and one that is only hidden on screens is drawn.
DrawnPage drawPage(int descriptor, std::int32_t page, double maxPointsPerSide);

}  // namespace tavio::pdf_helper
