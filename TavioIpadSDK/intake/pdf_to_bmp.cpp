#include "TavioIpadSDK/intake/pdf_to_bmp.h"

#include <exception>
#include <optional>

#include "TavioIpadSDK/imaging/print_bmp.h"
#include "TavioIpadSDK/intake/page_canvas.h"
#include "TavioIpadSDK/intake/target_size.h"
#include "TavioIpadSDK/platform/pdf_page.h"

namespace tavio::intake {
namespace {

// None also if there is no memory for it.
std::optional<pictures::Picture> canvasOf(const platform::PdfPage& page) {
    try {
        return pageOnCanvas(page);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

}  // namespace

bool PdfToBmp(const URL& url) {
    const std::optional<platform::PdfPage> page = platform::drawPdfPage(url).page;
    if (page) {
        const DotSize size = pageTargetSize(page->width, page->height);
        imaging::PrintBMP(size.width, size.height, canvasOf(*page));
    } else {
        imaging::PrintBMP(0, 0, std::nullopt);
    }
    return true;
}

}  // namespace tavio::intake
