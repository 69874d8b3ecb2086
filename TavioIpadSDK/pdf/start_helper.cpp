#include "TavioIpadSDK/pdf/start_helper.h"

#include "TavioIpadSDK/helper/ask_program.h"
#include "TavioIpadSDK/pdf/page_question.h"

namespace tavio::pdf {

namespace {

template <typename Document>
StartedHelper askFor(const Document& document, const PageRequest& request,
                     const platform::PdfLimits& limits, const std::string& helper) {
    const helper::Program program = programOfPages(helper, !request.dots.empty());
    return startedHelper(
        helper::ask(program, {wordsOf(request, limits), programLimits(limits)}, document), request,
        limits);
}

}  // namespace

StartedHelper startHelper(const machine::Descriptor& document, const PageRequest& request,
                          const platform::PdfLimits& limits, const std::string& helper) {
    return askFor(document, request, limits, helper);
}

StartedHelper startHelper(std::span<const Byte> document, const PageRequest& request,
                          const platform::PdfLimits& limits, const std::string& helper) {
    return askFor(document, request, limits, helper);
}

}  // namespace tavio::pdf
