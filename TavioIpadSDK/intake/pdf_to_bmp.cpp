#include "TavioIpadSDK/intake/pdf_to_bmp.h"

#include <cmath>
#include <exception>
#include <optional>
#include <utility>

#include "TavioIpadSDK/imaging/print_bmp.h"
#include "TavioIpadSDK/intake/target_size.h"
#include "TavioIpadSDK/machine/arithmetic.h"
#include "TavioIpadSDK/platform/canvas.h"
#include "TavioIpadSDK/platform/pdf_page.h"

namespace tavio::intake {
namespace {

using pictures::Picture;
using platform::PdfPage;

// The page on its canvas; none if the canvas would be too large, or if there is no memory.
std::optional<Picture> drawOnCanvas(const PdfPage& page) {
    const std::int32_t width = machine::truncateToInt32(std::ceil(page.width));
    const std::int32_t height = machine::truncateToInt32(std::ceil(page.height));
    if (std::int64_t{width} * height > pictures::kMaxPixels) return std::nullopt;
    try {
        platform::Canvas canvas(width, height);
        canvas.placeOpaque(page.picture, page.left, page.top);
        return std::move(canvas).takeSnapshot();
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

}  // namespace

bool PdfToBmp(const URL& url) {
    const std::optional<PdfPage> page = platform::drawPdfPage(url).page;
    if (page) {
        const DotSize size = pageTargetSize(page->width, page->height);
        imaging::PrintBMP(size.width, size.height, drawOnCanvas(*page));
    } else {
        imaging::PrintBMP(0, 0, std::nullopt);
    }
    return true;
}

}  // namespace tavio::intake
