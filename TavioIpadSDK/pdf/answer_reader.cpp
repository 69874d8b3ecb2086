#include "TavioIpadSDK/pdf/answer_reader.h"

#include <csignal>

namespace tavio::pdf {

namespace {

using platform::PdfLimits;
using platform::PdfOutcome;

constexpr int kLibrariesMissing = 127;  // how the dynamic loader ends a program it cannot load

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

// The reason why the answer is not whole.
PdfOutcome outcomeOf(const Ending& ending, const PdfLimits& limits) {
    if (ending.exitStatus == kLibrariesMissing) return PdfOutcome::kHelperMissing;
    const bool overTime = ending.processorTime >= limits.cpu;
    if (ending.signal == SIGXCPU || (ending.signal == SIGKILL && overTime)) {
        return PdfOutcome::kCpuLimit;
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
    const HelperProcess::Read read = process_.read(into, deadline_);
    if (read == HelperProcess::Read::kFull) return true;
    failure_ = PdfOutcome::kWallLimit;
    if (read == HelperProcess::Read::kLate) return false;
    const std::optional<Ending> ending = process_.waitForEnd(deadline_);
    if (ending) failure_ = outcomeOf(*ending, limits_);
    return false;
}

bool AnswerReader::endsHere() {
    std::byte next{};
    const HelperProcess::Read read = process_.read(std::span(&next, 1), deadline_);
    failure_ =
        read == HelperProcess::Read::kLate ? PdfOutcome::kWallLimit : PdfOutcome::kHelperFailed;
    return read == HelperProcess::Read::kEnd;
}

}  // namespace tavio::pdf
