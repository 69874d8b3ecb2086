// What is known of an encoded element.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tavio/printing/job.h"
#include "tavio/printing/result.h"

namespace tavio::printing {

// A page of a document that has been printed.
struct DocumentPage {
    std::string identity;  // tells the document from others
    std::string name;      // the document's, in sentences
    std::int32_t page = 0;
    std::int32_t pages = 0;  // of the document, 0 if not known
    double widthPoints = 0;
    double heightPoints = 0;
};

struct EncodedParts {
    std::optional<Size> size;
    std::optional<Rectangle> rectangle;
    std::vector<Warning> warnings;     // not yet assigned to an element
    std::optional<DocumentPage> page;  // of an element that is one
};

}  // namespace tavio::printing
