#include "TavioIpadSDK/platform/pdf_page.h"

#include <utility>

namespace tavio::platform {

namespace {

// Written by setPdfPageSource, read by drawPdfPage; empty means the default. Never destroyed: a
// global object of the application may still print in its destructor.
PdfPageSource& currentSource() {
    static PdfPageSource& source = *new PdfPageSource;
    return source;
}

}  // namespace

std::string describe(PdfOutcome outcome) {
    switch (outcome) {
        case PdfOutcome::kDrawn:
            return "the page was drawn";
        case PdfOutcome::kUnreadable:
            return "the document does not exist, is not a regular file or may not be read";
        case PdfOutcome::kNotPdf:
            return "the document is not a PDF document or is damaged beyond reading";
        case PdfOutcome::kEncrypted:
            return "the document is encrypted and needs a password";
        case PdfOutcome::kNoPage:
            return "the document has no page";
        case PdfOutcome::kTooLarge:
            return "the page is over the size limit, or has no size at all";
        case PdfOutcome::kCpuLimit:
            return "drawing the page went over the processor time limit";
        case PdfOutcome::kWallLimit:
            return "drawing the page went over the waiting time limit";
        case PdfOutcome::kMemoryLimit:
            return "drawing the page went over the memory limit";
        case PdfOutcome::kHelperMissing:
            return "the program tavio-pdf-page, which draws pages, cannot be started";
        case PdfOutcome::kHelperFailed:
            return "the program tavio-pdf-page, which draws pages, failed";
    }
    return "the page was not drawn";
}

void setPdfPageSource(PdfPageSource source) {
    currentSource() = std::move(source);
}

PdfPageResult drawPdfPage(const Url& url) noexcept {
    try {
        const PdfPageSource& source = currentSource();
        PdfPageResult result = source ? source(url) : drawPdfPageWithHelper(url);
        const bool drawn = result.outcome == PdfOutcome::kDrawn;
        const bool isWellFormed = drawn == result.page.has_value();
        if (isWellFormed && (!drawn || pictures::isWhole(result.page->picture))) return result;
    } catch (...) {  // NOLINT(bugprone-empty-catch): every exception counts as a failure, below
    }
    return {PdfOutcome::kHelperFailed, std::nullopt};
}

}  // namespace tavio::platform
