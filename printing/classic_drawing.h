// A page or a picture that is about to be made into dots the classic way.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "TavioIpadSDK/intake/dot_size.h"
#include "TavioIpadSDK/pictures/picture_rows.h"
#include "tavio/printing/encoded_parts.h"
#include "tavio/printing/job.h"
#include "tavio/printing/layout.h"
#include "tavio/printing/result.h"
#include "tavio/printing/ticket.h"

namespace tavio::printing {

struct ClassicDrawing {
    std::unique_ptr<pictures::PictureRows> rows;  // of the upright picture; 1 x 1 pixel or more
    intake::DotSize size;                         // at which it is printed
    std::string name;                             // in sentences
    std::optional<DocumentPage> page;             // none of a picture
    double smallestTextPoints = 0;                // of a page; 0 if it has no text
};

// Reads the file and opens the picture or draws the page. Throws std::bad_alloc.
Expected<ClassicDrawing, Problem> classicDrawingOf(const element::Document& document,
                                                   const Layout& layout,
                                                   const EncodeOptions& options);

Expected<ClassicDrawing, Problem> classicDrawingOf(const element::Pixels& pixels,
                                                   const Layout& layout,
                                                   const EncodeOptions& options);

}  // namespace tavio::printing
