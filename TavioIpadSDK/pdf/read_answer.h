// The answer of the program tavio-pdf-page as a page of one pixel per point.
#pragma once

#include <cstdint>
#include <optional>

#include "TavioIpadSDK/pdf/answer_reader.h"
#include "TavioIpadSDK/platform/pdf_page.h"

namespace tavio::pdf {

// No page, for this reason.
inline platform::DrawnPdfPage refused(platform::PdfOutcome outcome, std::int32_t pages = 0) {
    return {{outcome, std::nullopt}, pages};
}

// Reads the whole answer. One that is cut short, malformed or not possible for that page is
// kHelperFailed, unless the way in which the program ended tells more.
platform::DrawnPdfPage readAnswer(AnswerReader& answer);

}  // namespace tavio::pdf
