#include "TavioIpadSDK/pdf/page_question.h"

#include <utility>

#include "TavioIpadSDK/helper/number_text.h"

namespace tavio::pdf {

using helper::shortestText;
using platform::PdfLimits;
using platform::PdfOutcome;

helper::Program programOfPages(const std::string& path, bool mayBeKept) {
    return {"tavio-pdf-page", path, mayBeKept};
}

std::vector<std::string> wordsOf(const PageRequest& request, const PdfLimits& limits) {
    std::vector<std::string> words = {shortestText(limits.mostPointsPerSide),
                                      shortestText(request.page)};
    for (const std::int32_t number : request.dots) words.push_back(shortestText(number));
    return words;
}

helper::Limits programLimits(const PdfLimits& limits) {
    return {limits.cpu, limits.wall, limits.memoryBytes};
}

StartedHelper startedHelper(helper::Asked asked, const PageRequest& request,
                            const PdfLimits& limits) {
    if (!asked.answer) return {std::nullopt, outcomeOf(asked.failure)};
    return {AnswerReader(*std::move(asked.answer), request.page, limits), PdfOutcome::kDrawn};
}

}  // namespace tavio::pdf
