#include "TavioIpadSDK/pdf/draw_page.h"

#include <new>

#include "TavioIpadSDK/machine/open_regular_file.h"
#include "TavioIpadSDK/pdf/read_answer.h"
#include "TavioIpadSDK/pdf/start_helper.h"

namespace tavio::pdf {

namespace {

using machine::Descriptor;
using platform::DrawnPdfPage;
using platform::PdfLimits;
using platform::PdfOutcome;

DrawnPdfPage pageOf(StartedHelper helper) {
    return helper.answer ? readAnswer(*helper.answer) : refused(helper.failure);
}

// The result of `draw`, which may throw.
template <typename Draw>
DrawnPdfPage withoutException(Draw draw) noexcept {
    try {
        return draw();
    } catch (const std::bad_alloc&) {
        return refused(PdfOutcome::kMemoryLimit);
    } catch (...) {
        return refused(PdfOutcome::kHelperFailed);
    }
}

}  // namespace

DrawnPdfPage drawPage(const Descriptor& document, std::int32_t page, const PdfLimits& limits,
                      const std::string& helper) noexcept {
    return withoutException([&] {
        return pageOf(startHelper(document, {page, {}}, limits, helper));
    });
}

DrawnPdfPage drawPage(std::span<const Byte> document, std::int32_t page, const PdfLimits& limits,
                      const std::string& helper) noexcept {
    return withoutException([&] {
        return pageOf(startHelper(document, {page, {}}, limits, helper));
    });
}

}  // namespace tavio::pdf

namespace tavio::platform {

PdfPageResult drawPdfPageWithHelper(const Url& url, const PdfLimits& limits,
                                    const std::string& helper) noexcept {
    const auto draw = [&] {
        const machine::Descriptor document = machine::openRegularFile(url.fileSystemPath());
        return pdf::drawPage(document, 1, limits, helper);
    };
    return pdf::withoutException(draw).result;
}

}  // namespace tavio::platform
