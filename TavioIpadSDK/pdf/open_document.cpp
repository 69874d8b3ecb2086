#include "TavioIpadSDK/pdf/open_document.h"

#include <cerrno>

#include "TavioIpadSDK/helper/sealed_file.h"

namespace tavio::pdf {

using platform::PdfLimits;
using platform::PdfOutcome;

OpenDocument::OpenDocument(std::span<const Byte> document, const PdfLimits& limits,
                           const std::string& helper)
    : file_(helper::sealedFile(document)), limits_(limits), helper_(helper) {
    if (file_.isOpen()) return;
    const bool noDescriptor = errno == EMFILE || errno == ENFILE;
    failure_ = noDescriptor ? PdfOutcome::kHelperMissing : PdfOutcome::kMemoryLimit;
}

OpenDocument::~OpenDocument() = default;

StartedHelper OpenDocument::start(const PageRequest& request) {
    if (!file_.isOpen()) return {std::nullopt, failure_};
    return startHelper(file_, request, limits_, helper_);
}

}  // namespace tavio::pdf
