// Encoding one element of a ticket.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"
#include "tavio/printing/job.h"
#include "tavio/printing/layout.h"
#include "tavio/printing/result.h"
#include "tavio/printing/ticket.h"

namespace tavio::printing {

// What is known of an encoded element.
struct EncodedParts {
    std::optional<Size> size;
    std::optional<Rectangle> rectangle;
    std::vector<Warning> warnings;  // not yet assigned to an element

    // Of a page of a document, else 0 and "": see Drawing; the page; and the document's name.
    std::int32_t pages = 0;
    std::string document;
    std::int32_t page = 0;
    std::string name;
};

// Appends the element's bytes. After a problem `bytes` may have some of them. The problem is not yet
// assigned to an element. Throws only what the application's functions throw.
Expected<EncodedParts, Problem> appendElement(const Element& element, const Layout& layout,
                                              const EncodeOptions& options, Bytes& bytes);

}  // namespace tavio::printing
