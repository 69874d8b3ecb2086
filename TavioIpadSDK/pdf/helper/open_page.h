// A page of a document as the engine has it.
#pragma once

#include <memory>

#include <cairo.h>
#include <poppler.h>

#include "TavioIpadSDK/pdf/answer.h"

namespace tavio::pdf_helper {

struct ObjectDeleter {
    void operator()(void* object) const { g_object_unref(object); }
};
struct ContextDeleter {
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};
struct SurfaceDeleter {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
using Document = std::unique_ptr<PopplerDocument, ObjectDeleter>;
using Page = std::unique_ptr<PopplerPage, ObjectDeleter>;
using Context = std::unique_ptr<cairo_t, ContextDeleter>;
using Surface = std::unique_ptr<cairo_surface_t, SurfaceDeleter>;

struct CropBox {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
};

struct OpenedDocument {
    Document document;                           // none if it cannot be opened:
    pdf::Answer failure = pdf::Answer::kNotPdf;  // why
    int pages = 0;                               // 0 if it is not known
};

// Opens the document open as file descriptor `descriptor`, and owns that.
OpenedDocument openDocument(int descriptor);

struct OpenedPage {
    Page page;                                   // none if the page cannot be opened:
    pdf::Answer failure = pdf::Answer::kNotPdf;  // why
};

// Opens a page, from 1.
OpenedPage openPage(const OpenedDocument& document, int page);

CropBox cropBoxOf(PopplerPage* page);

// Makes the page be drawn as it would be printed: an annotation or form field that is not marked for
// printing is left out, and one that is only hidden on screens is drawn.
void showWhatIsPrinted(PopplerPage* page);

// The size of its smallest letters in points, as the document has them; 0 if there is no text.
double smallestText(PopplerPage* page);

}  // namespace tavio::pdf_helper
