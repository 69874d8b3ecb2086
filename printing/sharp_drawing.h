// A page or a picture that is about to be made into dots the sharp way.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "TavioIpadSDK/sharp/fit.h"
#include "TavioIpadSDK/sharp/grey_rows.h"
#include "tavio/printing/encoded_parts.h"
#include "tavio/printing/open_documents.h"
#include "tavio/printing/result.h"
#include "tavio/printing/ticket.h"

namespace tavio::printing {

struct SharpDrawing {
    std::unique_ptr<sharp::GreyRows> rows;
    sharp::Fitted fitted;
    std::string name;                  // in sentences
    std::optional<DocumentPage> page;  // none of a picture
    double smallestTextPoints = 0;  // as it is printed; 0 if there is no text, or none is known of
};

// Reads the file and opens the picture or draws the page, at the size that the rules give. Throws
// std::bad_alloc.
Expected<SharpDrawing, Problem> sharpDrawingOf(const element::Document& document,
                                               std::int32_t resolution,
                                               const sharp::FitRules& rules,
                                               const Encoding& encoding);

Expected<SharpDrawing, Problem> sharpDrawingOf(const element::Pixels& pixels,
                                               std::int32_t resolution,
                                               const sharp::FitRules& rules,
                                               const Encoding& encoding);

}  // namespace tavio::printing
