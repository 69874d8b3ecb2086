#include "TavioIpadSDK/pdf/helper/record_page.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "TavioIpadSDK/pdf/helper/even_lines.h"
#include "TavioIpadSDK/sharp/fit_page.h"
#include "TavioIpadSDK/sharp/settle_dots.h"

namespace tavio::pdf_helper {

namespace {

using pdf::Answer;
using sharp::Fitted;

struct Sides {
    double width = 0;
    double height = 0;
};

// Of the page as it is shown: turned as the document says.
Sides sidesOf(PopplerPage* page) {
    Sides sides;
    poppler_page_get_size(page, &sides.width, &sides.height);
    return sides;
}

// As many as are drawn in little more time than the program takes to start.
int pixelsPerDot(const Fitted& fit) {
    constexpr std::int64_t kMaxPixels = 40'000'000;
    std::int64_t factor = sharp::kMaxPixelsPerDotSide;
    while (factor > 1 && (factor * factor * fit.windowWidth * fit.windowHeight > kMaxPixels ||
                          factor * fit.windowWidth > sharp::kMaxWindowWidth)) {
        --factor;
    }
    return static_cast<int>(factor);
}

// Maps the page's points, from its top left corner, to the window's pixels.
cairo_matrix_t matrixOf(const Sides& page, const Fitted& fit, int factor) {
    const bool isTurnedAside = fit.quarterTurns % 2 == 1;
    const double width = isTurnedAside ? page.height : page.width;
    const double height = isTurnedAside ? page.width : page.height;
    cairo_matrix_t matrix{};
    cairo_matrix_init_scale(&matrix, factor, factor);
    cairo_matrix_translate(&matrix, -static_cast<double>(fit.left), -static_cast<double>(fit.top));
    cairo_matrix_scale(&matrix, static_cast<double>(fit.width) / width,
                       static_cast<double>(fit.height) / height);
    cairo_matrix_t turn{};
    switch (fit.quarterTurns) {
        case 1:
            cairo_matrix_init(&turn, 0, 1, -1, 0, width, 0);
            break;
        case 2:
            cairo_matrix_init(&turn, -1, 0, 0, -1, width, height);
            break;
        case 3:
            cairo_matrix_init(&turn, 0, -1, 1, 0, 0, height);
            break;
        default:
            cairo_matrix_init_identity(&turn);
    }
    cairo_matrix_multiply(&matrix, &turn, &matrix);
    return matrix;
}

pdf::AnswerHeader headerOf(const Sides& page, const Fitted& fit) {
    pdf::AnswerHeader header;
    header.outcome = Answer::kDrawn;
    header.width = page.width;
    header.height = page.height;
    header.left = static_cast<std::int32_t>(fit.left);
    header.top = static_cast<std::int32_t>(fit.top);
    header.columns = static_cast<std::uint32_t>(fit.windowWidth);
    header.rows = static_cast<std::uint32_t>(fit.windowHeight);
    return header;
}

cairo_status_t record(PopplerPage* page, const cairo_matrix_t& matrix, int factor,
                      cairo_surface_t* surface) {
    const Context context(cairo_create(surface));
    cairo_set_source_rgb(context.get(), 1, 1, 1);
    cairo_paint(context.get());
    cairo_set_matrix(context.get(), &matrix);
    keepLinesEven(surface, factor);
    poppler_page_render(page, context.get());
    keepLinesEven(nullptr, 1);
    cairo_surface_flush(surface);
    return cairo_status(context.get());
}

Answer recordInto(RecordedPage& recorded, double maxPointsPerSide, const DotsRequest& request) {
    PopplerPage* const page = recorded.opened.page.get();
    if (page == nullptr) return recorded.opened.failure;
    const Sides sides = sidesOf(page);
    if (!pdf::sidesAllowed(sides.width, sides.height, maxPointsPerSide)) return Answer::kTooLarge;
    const Fitted fit =
        sharp::fittedPage(sides.width, sides.height, request.resolution, request.fit);
    if (!sharp::isDrawable(fit)) return Answer::kTooLarge;

    recorded.factor = pixelsPerDot(fit);
    const cairo_rectangle_t extents{0, 0, static_cast<double>(fit.windowWidth * recorded.factor),
                                    static_cast<double>(fit.windowHeight * recorded.factor)};
    Surface surface(cairo_recording_surface_create(CAIRO_CONTENT_COLOR, &extents));
    showWhatIsPrinted(page);
    // After an error a context draws nothing more, and half a page is worse than none.
    const cairo_status_t status =
        record(page, matrixOf(sides, fit, recorded.factor), recorded.factor, surface.get());
    if (status == CAIRO_STATUS_NO_MEMORY) return Answer::kOutOfMemory;
    if (status != CAIRO_STATUS_SUCCESS) return Answer::kNotPdf;
    recorded.recording = std::move(surface);
    recorded.header = headerOf(sides, fit);
    recorded.header.smallestText = smallestText(page) * fit.scale;
    return Answer::kDrawn;
}

}  // namespace

RecordedPage recordPage(const OpenedDocument& document, std::int32_t page, double maxPointsPerSide,
                        const DotsRequest& request) {
    RecordedPage recorded;
    recorded.opened = openPage(document, page);
    recorded.header.outcome = recordInto(recorded, maxPointsPerSide, request);
    recorded.header.pages = document.pages;
    return recorded;
}

}  // namespace tavio::pdf_helper
