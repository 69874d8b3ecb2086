// Any page of a PDF document, from a file or from memory, with the number of the document's pages.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/machine/descriptor.h"
#include "TavioIpadSDK/platform/pdf_page.h"

namespace tavio::pdf {

// Draws a page, from 1, of the document that is open for reading as a regular file; its file offset
// has no meaning. The outcome is kNoPage if the document has no page of that number. Limits, helper
// and everything else are as with platform::drawPdfPageWithHelper(). Never throws.
platform::DrawnPdfPage drawPage(const machine::Descriptor& document, std::int32_t page,
                                const platform::PdfLimits& limits = {},
                                const std::string& helper = "") noexcept;

// The same for the bytes of a document. The helper program reads a copy of them in memory, which no
// file system sees.
platform::DrawnPdfPage drawPage(std::span<const Byte> document, std::int32_t page,
                                const platform::PdfLimits& limits = {},
                                const std::string& helper = "") noexcept;

}  // namespace tavio::pdf
