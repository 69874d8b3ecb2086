#include "TavioIpadSDK/pdf/start_helper.h"

#include <utility>

#include "TavioIpadSDK/helper/ask_program.h"
#include "TavioIpadSDK/helper/number_text.h"

namespace tavio::pdf {

namespace {

using helper::shortestText;
using platform::PdfLimits;
using platform::PdfOutcome;

helper::Program programAt(const std::string& path) {
    return {"tavio-pdf-page", path};
}

helper::Question questionOf(const PageRequest& request, const PdfLimits& limits) {
    helper::Question question;
    question.words = {shortestText(limits.mostPointsPerSide), shortestText(request.page)};
    for (const std::int32_t number : request.dots) question.words.push_back(shortestText(number));
    question.limits = {limits.cpu, limits.wall, limits.memoryBytes};
    return question;
}

StartedHelper startedOf(helper::Asked asked, const PageRequest& request, const PdfLimits& limits) {
    if (!asked.answer) return {std::nullopt, outcomeOf(asked.failure)};
    return {AnswerReader(*std::move(asked.answer), request.page, limits), PdfOutcome::kDrawn};
}

}  // namespace

StartedHelper startHelper(const machine::Descriptor& document, const PageRequest& request,
                          const PdfLimits& limits, const std::string& helper) {
    return startedOf(helper::ask(programAt(helper), questionOf(request, limits), document), request,
                     limits);
}

StartedHelper startHelper(std::span<const Byte> document, const PageRequest& request,
                          const PdfLimits& limits, const std::string& helper) {
    return startedOf(helper::ask(programAt(helper), questionOf(request, limits), document), request,
                     limits);
}

}  // namespace tavio::pdf
