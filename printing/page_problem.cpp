#include "tavio/printing/page_problem.h"

#include <exception>
#include <new>

#include "TavioIpadSDK/pdf/draw_page.h"
#include "tavio/printing/read_source.h"

namespace tavio::printing {
namespace {

using platform::PdfOutcome;

ProblemKind kindOf(PdfOutcome outcome) {
    switch (outcome) {
        case PdfOutcome::kUnreadable:
            return ProblemKind::kNotReadable;
        case PdfOutcome::kNotPdf:
            return ProblemKind::kDamaged;
        case PdfOutcome::kEncrypted:
            return ProblemKind::kEncrypted;
        case PdfOutcome::kNoPage:
            return ProblemKind::kNoSuchPage;
        case PdfOutcome::kTooLarge:
            return ProblemKind::kTooLarge;
        case PdfOutcome::kCpuLimit:
        case PdfOutcome::kWallLimit:
            return ProblemKind::kOverTime;
        case PdfOutcome::kMemoryLimit:
            return ProblemKind::kOverMemory;
        case PdfOutcome::kHelperMissing:
            return ProblemKind::kHelperMissing;
        case PdfOutcome::kDrawn:
        case PdfOutcome::kHelperFailed:
            return ProblemKind::kHelperFailed;
    }
    return ProblemKind::kHelperFailed;
}

bool isWellFormed(const platform::PdfPage& page) {
    return page.width > 0 && page.height > 0 && page.picture.orientation == 1 &&
           pictures::isWhole(page.picture);
}

bool isWellFormed(const DrawnPage& drawn) {
    const bool isDrawn = drawn.result.outcome == PdfOutcome::kDrawn;
    if (isDrawn != drawn.result.page.has_value()) return false;
    return !isDrawn || isWellFormed(*drawn.result.page);
}

// The engine is the application's and may throw.
DrawnPage askEngine(const PageEngine& engine, const Source& document, std::int32_t page) {
    try {
        DrawnPage drawn = engine(document, page);
        if (isWellFormed(drawn)) return drawn;
    } catch (const std::bad_alloc&) {
        throw;
    } catch (...) {  // NOLINT(bugprone-empty-catch): every other exception counts as a failure
    }
    return {{PdfOutcome::kHelperFailed, {}}, 0};
}

}  // namespace

DrawnPage askForPage(const std::shared_ptr<const Bytes>& file, const std::string& name,
                     std::int32_t page, const EncodeOptions& options) {
    if (options.pageEngine) return askEngine(options.pageEngine, Source::bytes(file, name), page);
    return pdf::drawPage(*file, page, options.pageLimits, options.helper);
}

tl::unexpected<Problem> pageProblem(PdfOutcome outcome, const std::string& name, std::int32_t page,
                                    std::int32_t pages) {
    if (outcome == PdfOutcome::kNoPage && pages > 0) {
        return problem(ProblemKind::kNoSuchPage, name + " has no page " + std::to_string(page) +
                                                     ", its last one is page " +
                                                     std::to_string(pages));
    }
    return problem(kindOf(outcome), name + " cannot be drawn: " + platform::describe(outcome));
}

}  // namespace tavio::printing
