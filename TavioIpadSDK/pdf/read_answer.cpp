#include "TavioIpadSDK/pdf/read_answer.h"

#include <algorithm>
#include <csignal>
#include <span>
#include <utility>

#include "TavioIpadSDK/pdf/answer.h"

namespace tavio::pdf {

namespace {

using platform::DrawnPdfPage;
using platform::PdfLimits;
using platform::PdfOutcome;
using platform::PdfPage;

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

// True if every field of a drawn page's header agrees with its crop box.
bool hasGoodBox(const AnswerHeader& header, const PdfLimits& limits) {
    if (!std::isfinite(header.x) || !std::isfinite(header.y)) return false;
    if (!sidesAllowed(header.width, header.height, limits.mostPointsPerSide)) return false;
    const PixelBox box = pixelBox(header.x, header.y, header.width, header.height);
    if (!(box.columns >= 1 && box.rows >= 1)) return false;
    if (!(box.columns * box.rows <= static_cast<double>(pictures::kMaxPixels))) return false;
    return header.left == machine::truncateToInt32(box.left) &&
           header.top == machine::truncateToInt32(box.top) &&
           static_cast<double>(header.columns) == box.columns &&
           static_cast<double>(header.rows) == box.rows;
}

PdfPage blankPage(const AnswerHeader& header) {
    PdfPage page;
    page.x = header.x;
    page.y = header.y;
    page.width = header.width;
    page.height = header.height;
    page.left = header.left;
    page.top = header.top;
    page.picture.width = static_cast<std::int32_t>(header.columns);
    page.picture.height = static_cast<std::int32_t>(header.rows);
    page.picture.pixels.resize(std::size_t{header.columns} * header.rows);
    return page;
}

bool isOpaque(const pictures::Picture& picture) {
    return std::ranges::all_of(picture.pixels, [](UInt32 pixel) { return pixel >> 24 == 255; });
}

// Reads one answer from a helper program.
class AnswerReader {
  public:
    AnswerReader(HelperProcess& process, std::int32_t page, const PdfLimits& limits,
                 Deadline deadline)
        : process_(process), page_(page), limits_(limits), deadline_(deadline) {}

    DrawnPdfPage read() {
        AnswerHeader header;
        if (!fill(std::as_writable_bytes(std::span(&header, 1)))) return refused(failure_);
        if (!isPossible(header, page_)) return refused(PdfOutcome::kHelperFailed);
        if (header.outcome != Answer::kDrawn) {
            return refused(outcomeOf(header.outcome), header.pages);
        }
        if (!hasGoodBox(header, limits_)) return refused(PdfOutcome::kHelperFailed);

        PdfPage page = blankPage(header);
        if (!fill(std::as_writable_bytes(std::span(page.picture.pixels)))) return refused(failure_);
        if (!endsHere()) return refused(failure_);
        if (!isOpaque(page.picture)) return refused(PdfOutcome::kHelperFailed);
        return {{PdfOutcome::kDrawn, std::move(page)}, header.pages};
    }

  private:
    // Returns false and sets failure_ if the bytes did not come.
    bool fill(std::span<std::byte> into) {
        const HelperProcess::Read read = process_.read(into, deadline_);
        if (read == HelperProcess::Read::kFull) return true;
        failure_ = PdfOutcome::kWallLimit;
        if (read == HelperProcess::Read::kLate) return false;
        const std::optional<Ending> ending = process_.waitForEnd(deadline_);
        if (ending) failure_ = outcomeOf(*ending, limits_);
        return false;
    }

    bool endsHere() {
        std::byte next{};
        const HelperProcess::Read read = process_.read(std::span(&next, 1), deadline_);
        failure_ =
            read == HelperProcess::Read::kLate ? PdfOutcome::kWallLimit : PdfOutcome::kHelperFailed;
        return read == HelperProcess::Read::kEnd;
    }

    HelperProcess& process_;
    std::int32_t page_;
    const PdfLimits& limits_;
    Deadline deadline_;
    PdfOutcome failure_ = PdfOutcome::kHelperFailed;
};

}  // namespace

DrawnPdfPage readAnswer(HelperProcess& process, std::int32_t page, const PdfLimits& limits,
                        Deadline deadline) {
    return AnswerReader(process, page, limits, deadline).read();
}

}  // namespace tavio::pdf
