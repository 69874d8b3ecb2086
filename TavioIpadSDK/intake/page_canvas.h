// A PDF page as the picture that is printed.
#pragma once

#include <optional>

#include "TavioIpadSDK/pictures/picture.h"
#include "TavioIpadSDK/platform/pdf_page.h"

namespace tavio::intake {

// The page on a canvas of its crop box's size, at the crop box's own coordinates. A crop box that
// does not begin at (0, 0) therefore shifts the page and leaves a strip of the canvas unfilled,
// which prints black. Applications and printers rely on these bytes. None if the canvas would be
// too large. Throws std::bad_alloc.
std::optional<pictures::Picture> pageOnCanvas(const platform::PdfPage& page);

}  // namespace tavio::intake
