#include "TavioIpadSDK/pdf/read_answer.h"

#include <algorithm>
#include <optional>
#include <span>
#include <utility>

#include "TavioIpadSDK/pdf/answer.h"

namespace tavio::pdf {

namespace {

using platform::DrawnPdfPage;
using platform::PdfLimits;
using platform::PdfOutcome;
using platform::PdfPage;

// True if every field of a drawn page's header agrees with its crop box.
bool hasGoodBox(const AnswerHeader& header, const PdfLimits& limits) {
    if (!std::isfinite(header.x) || !std::isfinite(header.y)) return false;
    if (!sidesAllowed(header.width, header.height, limits.mostPointsPerSide)) return false;
    const PixelBox box = pixelBox(header.x, header.y, header.width, header.height);
    if (!(box.columns >= 1 && box.rows >= 1)) return false;
    if (!(box.columns * box.rows <= static_cast<double>(pictures::kMaxPixels))) return false;
    return header.left == machine::truncateToInt32(box.left) &&
           header.top == machine::truncateToInt32(box.top) &&
           static_cast<double>(header.columns) == box.columns &&
           static_cast<double>(header.rows) == box.rows;
}

PdfPage blankPage(const AnswerHeader& header) {
    PdfPage page;
    page.x = header.x;
    page.y = header.y;
    page.width = header.width;
    page.height = header.height;
    page.left = header.left;
    page.top = header.top;
    page.picture.width = static_cast<std::int32_t>(header.columns);
    page.picture.height = static_cast<std::int32_t>(header.rows);
    page.picture.pixels.resize(std::size_t{header.columns} * header.rows);
    return page;
}

bool isOpaque(const pictures::Picture& picture) {
    return std::ranges::all_of(picture.pixels, [](UInt32 pixel) { return pixel >> 24 == 255; });
}

}  // namespace

DrawnPdfPage readAnswer(AnswerReader& answer) {
    const std::optional<AnswerHeader> header = answer.header();
    if (!header) return refused(answer.failure(), answer.pages());
    if (!hasGoodBox(*header, answer.limits()) || !hasGoodText(*header))
        return refused(PdfOutcome::kHelperFailed);

    PdfPage page = blankPage(*header);
    if (!answer.fill(std::as_writable_bytes(std::span(page.picture.pixels)))) {
        return refused(answer.failure());
    }
    if (!answer.endsHere()) return refused(answer.failure());
    if (!isOpaque(page.picture)) return refused(PdfOutcome::kHelperFailed);
    return {{PdfOutcome::kDrawn, std::move(page)}, header->pages, header->smallestText};
}

}  // namespace tavio::pdf
