// A page of a PDF document in grey, drawn at exactly the dots that it will have.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/pdf/open_document.h"
#include "TavioIpadSDK/pictures/picture_rows.h"
#include "TavioIpadSDK/platform/pdf_page.h"
#include "TavioIpadSDK/sharp/fit.h"
#include "TavioIpadSDK/sharp/grey_rows.h"

namespace tavio::sharp {

struct PageOrder {
    std::int32_t page = 1;          // from 1
    std::int32_t resolution = 300;  // dots per inch of the own size
    FitRules fit;
};

// A page that is being drawn.
//
// Text, lines and fills that are black or white are solid values (grey_rows.h): a dot is black if half
// of it or more is covered, and strokes of letters that are thinner than a dot become one dot. Other
// colours and pictures are greys by their luminance, 1 to 254, and do not mix with solid ones. Lines are at least one dot wide, lines of one width everywhere equally so.
struct SharpPage {
    platform::PdfOutcome outcome = platform::PdfOutcome::kHelperFailed;
    std::int32_t pages = 0;  // how many the document has; 0 if it is not known

    // The following only with the outcome kDrawn.
    double widthPoints = 0;  // of the crop box, turned as the document says
    double heightPoints = 0;
    Fitted fitted;  // the window's size is that of the rows
    // The size of the smallest letters' face as it is printed; 0 if the page has no text.
    double smallestTextPoints = 0;
    std::unique_ptr<GreyRows> rows;
};

// Thrown by the rows if the program cannot finish the page.
struct UnfinishedPage : pictures::DamagedPicture {
    explicit UnfinishedPage(platform::PdfOutcome why)
        : DamagedPicture(platform::describe(why)), outcome(why) {}

    platform::PdfOutcome outcome;  // other than kDrawn
};

// Draws the page with the helper program, as platform::drawPdfPageWithHelper does, with its limits. The
// rows hold nothing of `document` once this has returned. If the program dies or reaches a limit later,
// the rows throw UnfinishedPage, so they should be read to their end before anything is printed. Never
// throws.
//
// kTooLarge: a side of the crop box is above the limit, or the page has more dots than can be drawn
// (isDrawable).
SharpPage drawPage(std::span<const Byte> document, const PageOrder& order,
                   const platform::PdfLimits& limits = {}, const std::string& helper = "") noexcept;

// The same for a document that is opened once for all its pages. Any number of threads may draw its
// pages at once. The rows do not need `document` any more once this has returned.
SharpPage drawPage(pdf::OpenDocument& document, const PageOrder& order) noexcept;

}  // namespace tavio::sharp
