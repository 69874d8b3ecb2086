#include "TavioIpadSDK/pdf/helper/draw_page.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "TavioIpadSDK/pictures/picture.h"

namespace tavio::pdf_helper {

namespace {

using pdf::Answer;
using pdf::PixelBox;

DrawnPage refused(Answer outcome) {
    DrawnPage page;
    page.header.outcome = outcome;
    return page;
}

// A surface limits the sides, a picture limits the number of pixels.
bool fitsSurface(const CropBox& box, double maxPointsPerSide) {
    constexpr double kMaxSide = 32767;
    if (!std::isfinite(box.x) || !std::isfinite(box.y)) return false;
    if (!pdf::sidesAllowed(box.width, box.height, maxPointsPerSide)) return false;
    const PixelBox pixels = pdf::pixelBox(box.x, box.y, box.width, box.height);
    return pixels.columns <= kMaxSide && pixels.rows <= kMaxSide &&
           pixels.columns * pixels.rows <= static_cast<double>(pictures::kMaxPixels);
}

// Centres the page in the box. The engine draws it upright with its top left corner at the origin.
// A page that is wider or taller than the box because of its rotation is shrunk.
void fitIntoBox(cairo_t* context, PopplerPage* page, const CropBox& box) {
    double width = 0;
    double height = 0;
    poppler_page_get_size(page, &width, &height);
    const double scale = std::min({1.0, box.width / width, box.height / height});
    cairo_translate(context, (box.width - width * scale) / 2, (box.height - height * scale) / 2);
    cairo_scale(context, scale, scale);
}

cairo_status_t render(PopplerPage* page, const CropBox& box, cairo_surface_t* surface) {
    const PixelBox pixels = pdf::pixelBox(box.x, box.y, box.width, box.height);
    const Context context(cairo_create(surface));
    cairo_set_source_rgb(context.get(), 1, 1, 1);
    cairo_paint(context.get());

    cairo_translate(context.get(), box.x - pixels.left, -box.y - pixels.top);
    cairo_rectangle(context.get(), 0, 0, box.width, box.height);
    cairo_clip(context.get());
    fitIntoBox(context.get(), page, box);
    poppler_page_render(page, context.get());
    cairo_surface_flush(surface);
    return cairo_status(context.get());
}

DrawnPage drawPageOf(PopplerPage* page, double maxPointsPerSide) {
    const CropBox box = cropBoxOf(page);
    if (!fitsSurface(box, maxPointsPerSide)) return refused(Answer::kTooLarge);

    DrawnPage drawn{pdf::drawnHeader(box.x, box.y, box.width, box.height), nullptr};
    drawn.surface.reset(cairo_image_surface_create(CAIRO_FORMAT_ARGB32,
                                                   static_cast<int>(drawn.header.columns),
                                                   static_cast<int>(drawn.header.rows)));
    showWhatIsPrinted(page);
    // After an error a context draws nothing more, and half a page is worse than none.
    const cairo_status_t status = render(page, box, drawn.surface.get());
    if (status == CAIRO_STATUS_NO_MEMORY) return refused(Answer::kOutOfMemory);
    if (status != CAIRO_STATUS_SUCCESS) return refused(Answer::kNotPdf);
    drawn.header.smallestText = smallestText(page);
    return drawn;
}

}  // namespace

DrawnPage drawPage(const OpenedDocument& document, std::int32_t page, double maxPointsPerSide) {
    const OpenedPage opened = openPage(document, page);
    DrawnPage drawn =
        opened.page ? drawPageOf(opened.page.get(), maxPointsPerSide) : refused(opened.failure);
    drawn.header.pages = document.pages;
    return drawn;
}

}  // namespace tavio::pdf_helper
