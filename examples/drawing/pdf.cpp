#include "examples/drawing/pdf.h"

#include <algorithm>

#include <cairo-pdf.h>

namespace tavio::examples {

void writePage(const std::string& path, const char* title, double width, double height,
               const std::function<void(cairo_t*)>& draw) {
    const Surface surface(cairo_pdf_surface_create(path.c_str(), width, height));
    cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_TITLE, title);
    cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_CREATE_DATE,
                                   "2024-01-01T00:00:00Z");
    const Context context(cairo_create(surface.get()));
    draw(context.get());
    require(cairo_status(context.get()));
    cairo_surface_finish(surface.get());
    require(cairo_surface_status(surface.get()));
}

void drawBars(cairo_t* c, const Box& box) {
    unsigned pattern = 20260117;
    auto next = [&pattern] {
        pattern = pattern * 1103515245U + 12345U;
        return 1 + (pattern >> 20U) % 3;
    };
    const double end = box.y + box.height;
    for (double y = box.y; y < end;) {
        const double bar = std::min<double>(next(), end - y);
        cairo_rectangle(c, box.x, y, box.width, bar);
        y += bar + next();
    }
    cairo_fill(c);
}

}  // namespace tavio::examples
