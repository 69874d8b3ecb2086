// Asking the program tavio-pdf-page for a page.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/machine/descriptor.h"
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

// Starts the helper program for a document that is open for reading as a regular file. Limits and
// helper are as with platform::drawPdfPageWithHelper().
StartedHelper startHelper(const machine::Descriptor& document, const PageRequest& request,
                          const platform::PdfLimits& limits, const std::string& helper);

// The same for the bytes of a document, of which the program gets a copy.
StartedHelper startHelper(std::span<const Byte> document, const PageRequest& request,
                          const platform::PdfLimits& limits, const std::string& helper);

}  // namespace tavio::pdf
