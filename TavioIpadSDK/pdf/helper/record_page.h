// A page of a document as drawing operations, in the pixels from which its dots are settled.
#pragma once

#include <cstdint>

#include "TavioIpadSDK/pdf/answer.h"
#include "TavioIpadSDK/pdf/helper/open_page.h"
#include "TavioIpadSDK/sharp/fit.h"

namespace tavio::pdf_helper {

struct DotsRequest {
    std::int32_t resolution = 0;  // dots per inch
    sharp::FitRules fit;
};

// The page is interpreted once and recorded. Strips of it are drawn from the recording, so that the
// pixels are never in memory as a whole: there are many times as many as dots.
struct RecordedPage {
    pdf::AnswerHeader header;
    OpenedPage opened;
    Surface recording;  // present exactly when header.outcome is kDrawn
    int factor = 1;     // pixels per dot, in both directions
};

// Records a page, from 1, as it would be printed.
RecordedPage recordPage(const OpenedDocument& document, std::int32_t page, double maxPointsPerSide,
                        const DotsRequest& request);

}  // namespace tavio::pdf_helper
