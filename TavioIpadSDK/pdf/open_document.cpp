#include "TavioIpadSDK/pdf/open_document.h"

#include <cerrno>
#include <utility>

#include "TavioIpadSDK/helper/sealed_file.h"
#include "TavioIpadSDK/pdf/page_question.h"

namespace tavio::pdf {

using platform::PdfLimits;

OpenDocument::OpenDocument(std::span<const Byte> document, const PdfLimits& limits,
                           const std::string& helper)
    : limits_(limits) {
    machine::Descriptor file = helper::sealedFile(document);
    if (file.isOpen()) {
        input_.emplace(programOfPages(helper, true), programLimits(limits), std::move(file));
    } else {
        failure_ = outcomeOf(helper::failureOfSealedFile(errno));
    }
}

StartedHelper OpenDocument::start(const PageRequest& request) {
    if (!input_) return {std::nullopt, failure_};
    return startedHelper(input_->ask(wordsOf(request, limits_)), request, limits_);
}

}  // namespace tavio::pdf
