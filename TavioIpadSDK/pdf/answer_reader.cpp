#include "TavioIpadSDK/pdf/answer_reader.h"

namespace tavio::pdf {

namespace {

using helper::Failure;
using platform::PdfOutcome;

PdfOutcome outcomeOf(Answer answer) {
    switch (answer) {
        case Answer::kDrawn:
            return PdfOutcome::kDrawn;
        case Answer::kNotPdf:
            return PdfOutcome::kNotPdf;
        case Answer::kEncrypted:
            return PdfOutcome::kEncrypted;
        case Answer::kNoPage:
            return PdfOutcome::kNoPage;
        case Answer::kTooLarge:
            return PdfOutcome::kTooLarge;
        case Answer::kOutOfMemory:
            return PdfOutcome::kMemoryLimit;
    }
    return PdfOutcome::kHelperFailed;
}

// True if an answer of this form can be one about the page.
bool isPossible(const AnswerHeader& header, std::int32_t page) {
    if (header.magic != kAnswerMagic || header.version != kAnswerVersion) return false;
    if (header.pages < 0) return false;
    const bool exists = page >= 1 && page <= header.pages;
    if (header.outcome == Answer::kDrawn) return exists;
    return header.outcome != Answer::kNoPage || !exists;
}

}  // namespace

PdfOutcome outcomeOf(Failure failure) {
    switch (failure) {
        case Failure::kUnreadable:
            return PdfOutcome::kUnreadable;
        case Failure::kMissing:
            return PdfOutcome::kHelperMissing;
        case Failure::kFailed:
            return PdfOutcome::kHelperFailed;
        case Failure::kCpuLimit:
            return PdfOutcome::kCpuLimit;
        case Failure::kWallLimit:
            return PdfOutcome::kWallLimit;
        case Failure::kMemoryLimit:
            return PdfOutcome::kMemoryLimit;
    }
    return PdfOutcome::kHelperFailed;
}

std::optional<AnswerHeader> AnswerReader::header() {
    AnswerHeader header;
    if (!fill(std::as_writable_bytes(std::span(&header, 1)))) return std::nullopt;
    if (!isPossible(header, page_)) {
        failure_ = PdfOutcome::kHelperFailed;
        return std::nullopt;
    }
    pages_ = header.pages;
    if (header.outcome == Answer::kDrawn) return header;
    failure_ = outcomeOf(header.outcome);
    return std::nullopt;
}

bool AnswerReader::fill(std::span<std::byte> into) {
    if (answer_.fill(into)) return true;
    failure_ = outcomeOf(answer_.failure());
    return false;
}

bool AnswerReader::endsHere() {
    const bool ends = answer_.endsHere();
    failure_ = outcomeOf(answer_.failure());
    return ends;
}

}  // namespace tavio::pdf
