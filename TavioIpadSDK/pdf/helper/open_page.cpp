#include "TavioIpadSDK/pdf/helper/open_page.h"

#include <algorithm>
#include <cmath>

namespace tavio::pdf_helper {

namespace {

using pdf::Answer;

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

}  // namespace

OpenedDocument openDocument(int descriptor) {
    GError* error = nullptr;
    OpenedDocument opened;
    opened.document.reset(poppler_document_new_from_fd(descriptor, nullptr, &error));
    const bool encrypted = g_error_matches(error, POPPLER_ERROR, POPPLER_ERROR_ENCRYPTED) != FALSE;
    opened.failure = encrypted ? Answer::kEncrypted : Answer::kNotPdf;
    g_clear_error(&error);
    if (opened.document) {
        opened.pages = std::max(poppler_document_get_n_pages(opened.document.get()), 0);
    }
    return opened;
}

OpenedPage openPage(const OpenedDocument& document, int page) {
    if (!document.document) return {nullptr, document.failure};
    if (page < 1 || page > document.pages) return {nullptr, Answer::kNoPage};
    return {Page(poppler_document_get_page(document.document.get(), page - 1)), Answer::kNotPdf};
}

CropBox cropBoxOf(PopplerPage* page) {
    PopplerRectangle corners{};
    poppler_page_get_crop_box(page, &corners);
    return {corners.x1, corners.y1, corners.x2 - corners.x1, corners.y2 - corners.y1};
}

// The engine's own rendering "for printing" is made for paper at high resolution: at one pixel per
// point, hairlines become nearly white; pictures are not smoothed, and some patterns are missing.
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

double smallestText(PopplerPage* page) {
    double smallest = 0;
    GList* attributes = poppler_page_get_text_attributes(page);
    for (const GList* node = attributes; node != nullptr; node = node->next) {
        const double size = static_cast<PopplerTextAttributes*>(node->data)->font_size;
        if (std::isfinite(size) && size > 0 && (smallest == 0 || size < smallest)) smallest = size;
    }
    poppler_page_free_text_attributes(attributes);
    return smallest;
}

}  // namespace tavio::pdf_helper
