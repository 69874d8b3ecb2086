// A document of which many pages are drawn.
#pragma once

#include <memory>
#include <span>
#include <string>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/machine/descriptor.h"
#include "TavioIpadSDK/pdf/start_helper.h"
#include "TavioIpadSDK/platform/pdf_page.h"

namespace tavio::pdf {

// The limits hold for each page by itself. Any number of threads may ask for pages at once. Pages that
// are being drawn do not need this object any more.
class OpenDocument {
  public:
    // Keeps a copy of the bytes, which no file system sees; reads nothing of them. Limits and helper
    // are as with platform::drawPdfPageWithHelper(). Throws only std::bad_alloc.
    explicit OpenDocument(std::span<const Byte> document, const platform::PdfLimits& limits = {},
                          const std::string& helper = "");
    OpenDocument(const OpenDocument&) = delete;
    OpenDocument& operator=(const OpenDocument&) = delete;
    ~OpenDocument();

    // Asks for a page. Throws only std::bad_alloc.
    StartedHelper start(const PageRequest& request);

    const platform::PdfLimits& limits() const { return limits_; }

  private:
    machine::Descriptor file_;
    platform::PdfOutcome failure_ = platform::PdfOutcome::kDrawn;  // if there is no file: why
    platform::PdfLimits limits_;
    std::string helper_;
};

}  // namespace tavio::pdf
