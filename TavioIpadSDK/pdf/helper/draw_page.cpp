#include "TavioIpadSDK/pdf/helper/draw_page.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include <poppler.h>

#include "TavioIpadSDK/pictures/picture.h"

namespace tavio::pdf_helper {

namespace {

using pdf::Answer;
using pdf::PixelBox;

struct ObjectDeleter {
    void operator()(void* object) const { g_object_unref(object); }
};
struct ContextDeleter {
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};
using Document = std::unique_ptr<PopplerDocument, ObjectDeleter>;
using Page = std::unique_ptr<PopplerPage, ObjectDeleter>;
using Context = std::unique_ptr<cairo_t, ContextDeleter>;

struct CropBox {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
};

DrawnPage refused(Answer outcome) {
    DrawnPage page;
    page.header.outcome = outcome;
    return page;
}

Document openDocument(int descriptor, Answer& failure) {
    GError* error = nullptr;
    Document document(poppler_document_new_from_fd(descriptor, nullptr, &error));
    const bool encrypted = g_error_matches(error, POPPLER_ERROR, POPPLER_ERROR_ENCRYPTED) != FALSE;
    failure = encrypted ? Answer::kEncrypted : Answer::kNotPdf;
    g_clear_error(&error);
    return document;
}

CropBox cropBoxOf(PopplerPage* page) {
    PopplerRectangle corners{};
    poppler_page_get_crop_box(page, &corners);
    return {corners.x1, corners.y1, corners.x2 - corners.x1, corners.y2 - corners.y1};
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

// True for annotations that are not part of the page; a print leaves them out.
bool isScreenAid(PopplerAnnotType type) {
    return type == POPPLER_ANNOT_LINK || type == POPPLER_ANNOT_POPUP ||
           type == POPPLER_ANNOT_SOUND || type == POPPLER_ANNOT_MOVIE ||
           type == POPPLER_ANNOT_SCREEN || type == POPPLER_ANNOT_FILE_ATTACHMENT;
}

bool isPrinted(PopplerAnnot* annotation) {
    const unsigned flags = poppler_annot_get_flags(annotation);
    const bool marked = (flags & POPPLER_ANNOT_FLAG_PRINT) != 0;
    const bool hidden = (flags & POPPLER_ANNOT_FLAG_HIDDEN) != 0;
    return marked && !hidden && !isScreenAid(poppler_annot_get_annot_type(annotation));
}

// The engine's own rendering "for printing" is made for paper at high resolution: at one pixel per
// point, hairlines become nearly white, pictures are not smoothed, and some patterns are missing.
// So the page is rendered as for a screen. Before that, every annotation that would be printed is
// made visible and every other one is hidden.
void showWhatIsPrinted(PopplerPage* page) {
    GList* annotations = poppler_page_get_annot_mapping(page);
    for (const GList* node = annotations; node != nullptr; node = node->next) {
        PopplerAnnot* annotation = static_cast<PopplerAnnotMapping*>(node->data)->annot;
        const unsigned kept = poppler_annot_get_flags(annotation) &
                              ~unsigned{POPPLER_ANNOT_FLAG_HIDDEN | POPPLER_ANNOT_FLAG_NO_VIEW};
        const unsigned hidden = isPrinted(annotation) ? 0U : unsigned{POPPLER_ANNOT_FLAG_HIDDEN};
        poppler_annot_set_flags(annotation, static_cast<PopplerAnnotFlag>(kept | hidden));
    }
    poppler_page_free_annot_mapping(annotations);
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

DrawnPage drawPageOf(PopplerDocument* document, int index, double maxPointsPerSide) {
    const Page page(poppler_document_get_page(document, index));
    if (!page) return refused(Answer::kNotPdf);

    const CropBox box = cropBoxOf(page.get());
    if (!fitsSurface(box, maxPointsPerSide)) return refused(Answer::kTooLarge);

    DrawnPage drawn{pdf::drawnHeader(box.x, box.y, box.width, box.height), nullptr};
    drawn.surface.reset(cairo_image_surface_create(CAIRO_FORMAT_ARGB32,
                                                   static_cast<int>(drawn.header.columns),
                                                   static_cast<int>(drawn.header.rows)));
    showWhatIsPrinted(page.get());
    // After an error a context draws nothing more, and half a page is worse than none.
    const cairo_status_t status = render(page.get(), box, drawn.surface.get());
    if (status == CAIRO_STATUS_NO_MEMORY) return refused(Answer::kOutOfMemory);
    if (status != CAIRO_STATUS_SUCCESS) return refused(Answer::kNotPdf);
    return drawn;
}

}  // namespace

DrawnPage drawPage(int descriptor, std::int32_t page, double maxPointsPerSide) {
    Answer failure = Answer::kNotPdf;
    const Document document = openDocument(descriptor, failure);
    if (!document) return refused(failure);
    const int pages = std::max(poppler_document_get_n_pages(document.get()), 0);
    const bool exists = page >= 1 && page <= pages;
    DrawnPage drawn =
        exists ? drawPageOf(document.get(), page - 1, maxPointsPerSide) : refused(Answer::kNoPage);
    drawn.header.pages = pages;
    return drawn;
}

}  // namespace tavio::pdf_helper
