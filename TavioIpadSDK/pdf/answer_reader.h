// Reads the answer of the program tavio-pdf-page, which is not trusted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>

#include "TavioIpadSDK/helper/answer_stream.h"
#include "TavioIpadSDK/pdf/answer.h"
#include "TavioIpadSDK/platform/pdf_page.h"

namespace tavio::pdf {

// The same failure as the outcome of a page.
platform::PdfOutcome outcomeOf(helper::Failure failure);

// The answer of a program that was asked for a page with these limits. The program is stopped when
// this object ends.
class AnswerReader {
  public:
    AnswerReader(helper::AnswerStream answer, std::int32_t page, const platform::PdfLimits& limits)
        : answer_(std::move(answer)), page_(page), limits_(limits) {}

    // What follows returns false, or none, if the answer is cut short, malformed or not possible for
    // that page. Then failure() is the outcome; nothing more can be read.

    // The header; of a page that is not drawn, it is a failure.
    std::optional<AnswerHeader> header();

    // Reads exactly into.size() bytes.
    bool fill(std::span<std::byte> into);

    // True if the answer ends here.
    bool endsHere();

    platform::PdfOutcome failure() const { return failure_; }
    std::int32_t pages() const { return pages_; }  // of the document, once the header is read
    const platform::PdfLimits& limits() const { return limits_; }

  private:
    helper::AnswerStream answer_;
    std::int32_t page_;
    platform::PdfLimits limits_;
    std::int32_t pages_ = 0;
    platform::PdfOutcome failure_ = platform::PdfOutcome::kHelperFailed;
};

}  // namespace tavio::pdf
