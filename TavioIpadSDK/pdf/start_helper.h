// Asking the program tavio-pdf-page for a page.
#pragma once

#include <span>
#include <string>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/machine/descriptor.h"
#include "TavioIpadSDK/pdf/page_question.h"
#include "TavioIpadSDK/platform/pdf_page.h"

namespace tavio::pdf {

// Asks the helper program for a page of a document that is open for reading as a regular file. Limits
// and helper are as with platform::drawPdfPageWithHelper(). For a page in dots, the program may be kept
// (helper/shared_keepers.h); for others it may not, since no process may outlive their calls.
StartedHelper startHelper(const machine::Descriptor& document, const PageRequest& request,
                          const platform::PdfLimits& limits, const std::string& helper);

// The same for the bytes of a document, of which the program gets a copy.
StartedHelper startHelper(std::span<const Byte> document, const PageRequest& request,
                          const platform::PdfLimits& limits, const std::string& helper);

}  // namespace tavio::pdf
