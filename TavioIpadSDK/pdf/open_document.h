// A document of which many pages are drawn.
#pragma once

#include <optional>
#include <span>
#include <string>

#include "TavioIpadSDK/helper/opened_input.h"
#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/pdf/page_question.h"
#include "TavioIpadSDK/platform/pdf_page.h"

namespace tavio::pdf {

// It is opened once for all pages but the first, if the helper program can be kept, and pages share
// nothing that is drawn. The limits hold for each page by itself. Any number of threads may ask for pages at once. Pages that
// are being drawn do not need this object any more.
class OpenDocument {
  public:
    // Keeps a copy of the bytes, which no file system sees; reads nothing of them. Limits and helper
    // are as with platform::drawPdfPageWithHelper(). Throws only std::bad_alloc.
    explicit OpenDocument(std::span<const Byte> document, const platform::PdfLimits& limits = {},
                          const std::string& helper = "");
    OpenDocument(const OpenDocument&) = delete;
    OpenDocument& operator=(const OpenDocument&) = delete;

    // Asks for a page. Throws only std::bad_alloc.
    StartedHelper start(const PageRequest& request);

    const platform::PdfLimits& limits() const { return limits_; }

  private:
    platform::PdfLimits limits_;
    platform::PdfOutcome failure_ = platform::PdfOutcome::kDrawn;  // if there is no input: why
    std::optional<helper::OpenedInput> input_;
};

}  // namespace tavio::pdf
