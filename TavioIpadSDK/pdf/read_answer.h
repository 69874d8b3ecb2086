// The answer of the program tavio-pdf-page, which is not trusted.
#pragma once

#include <cstdint>
#include <optional>

#include "TavioIpadSDK/pdf/helper_process.h"
#include "TavioIpadSDK/platform/pdf_page.h"

namespace tavio::pdf {

// No page, for this reason.
inline platform::DrawnPdfPage refused(platform::PdfOutcome outcome, std::int32_t pages = 0) {
    return {{outcome, std::nullopt}, pages};
}

// Reads the answer of a program that was asked for a page with these limits. An answer that is cut
// short, malformed or not possible for that page is kHelperFailed, unless the way in which the
// program ended tells more.
platform::DrawnPdfPage readAnswer(HelperProcess& process, std::int32_t page,
                                  const platform::PdfLimits& limits, Deadline deadline);

}  // namespace tavio::pdf
