// A request for a page as a question to the program tavio-pdf-page.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "TavioIpadSDK/helper/ask_program.h"
#include "TavioIpadSDK/pdf/answer_reader.h"
#include "TavioIpadSDK/platform/pdf_page.h"

namespace tavio::pdf {

struct PageRequest {
    std::int32_t page = 1;           // from 1
    std::vector<std::int32_t> dots;  // the arguments of a page in dots (answer.h), or none
};

struct StartedHelper {
    std::optional<AnswerReader> answer;  // of the program that was started
    platform::PdfOutcome failure;        // if there is none: why
};

// The program at `path`, "" looks for it.
helper::Program programOfPages(const std::string& path, bool mayBeKept);

std::vector<std::string> wordsOf(const PageRequest& request, const platform::PdfLimits& limits);

helper::Limits programLimits(const platform::PdfLimits& limits);

StartedHelper startedHelper(helper::Asked asked, const PageRequest& request,
                            const platform::PdfLimits& limits);

}  // namespace tavio::pdf
