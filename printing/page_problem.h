// Asking for a page of a document, and why there is none.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "TavioIpadSDK/machine/bytes.h"
#include "tavio/printing/job.h"
#include "tavio/printing/result.h"

namespace tavio::printing {

// Asks the engine of the options, or the helper program. A malformed answer of an engine is
// kHelperFailed.
DrawnPage askForPage(const std::shared_ptr<const Bytes>& file, const std::string& name,
                     std::int32_t page, const EncodeOptions& options);

// outcome: other than kDrawn. name: the document's, in the sentence. pages: of the document, 0 if not
// known.
tl::unexpected<Problem> pageProblem(platform::PdfOutcome outcome, const std::string& name,
                                    std::int32_t page, std::int32_t pages);

}  // namespace tavio::printing
