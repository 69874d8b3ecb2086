#include "TavioIpadSDK/sharp/draw_page.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <new>
#include <optional>
#include <utility>
#include <vector>

#include "TavioIpadSDK/machine/uncleared_bytes.h"
#include "TavioIpadSDK/pdf/start_helper.h"
#include "TavioIpadSDK/pictures/picture_rows.h"
#include "TavioIpadSDK/sharp/fit_page.h"

namespace tavio::sharp {

namespace {

using pdf::AnswerHeader;
using pdf::AnswerReader;
using platform::PdfLimits;
using platform::PdfOutcome;

// The rows of a page as the program sends them. The program ends with them.
class PageRows : public GreyRows {
  public:
    PageRows(AnswerReader answer, std::int32_t width, std::int32_t height)
        : answer_(std::move(answer)), width_(width), height_(height), rowsLeft_(height) {}

    std::int32_t width() const override { return width_; }
    std::int32_t height() const override { return height_; }

    std::span<const Byte> next(std::int32_t maxRows) override {
        if (rowsLeft_ == 0) return {};
        constexpr std::int32_t kBytesAtOnce = 1 << 18;
        const std::int32_t atOnce = std::max(kBytesAtOnce / width_, 1);
        const std::int32_t rows = std::min({maxRows, atOnce, rowsLeft_});
        rows_.resize(static_cast<std::size_t>(rows) * static_cast<std::size_t>(width_));
        rowsLeft_ -= rows;
        const bool isWhole = answer_->fill(std::as_writable_bytes(std::span(rows_))) &&
                             (rowsLeft_ > 0 || answer_->endsHere());
        if (!isWhole) fail();
        if (rowsLeft_ == 0) answer_.reset();
        return rows_;
    }

  private:
    [[noreturn]] void fail() {
        const PdfOutcome failure = answer_->failure();
        answer_.reset();
        rowsLeft_ = 0;
        throw UnfinishedPage(failure);
    }

    std::optional<AnswerReader> answer_;  // present while rows are left
    std::int32_t width_;
    std::int32_t height_;
    std::int32_t rowsLeft_;
    machine::UnclearedBytes rows_;
};

SharpPage refused(PdfOutcome outcome, std::int32_t pages = 0) {
    SharpPage page;
    page.outcome = outcome;
    page.pages = pages;
    return page;
}

std::vector<std::int32_t> argumentsOf(const PageOrder& order) {
    return {order.resolution, static_cast<std::int32_t>(order.fit.fit),
            static_cast<std::int32_t>(order.fit.turn), order.fit.boxWidth, order.fit.boxHeight};
}

bool hasWindow(const AnswerHeader& header, const Fitted& fit) {
    return header.left == fit.left && header.top == fit.top && header.columns == fit.windowWidth &&
           header.rows == fit.windowHeight;
}

// The page that the header promises; none if that page cannot be.
std::optional<SharpPage> pageOf(const AnswerHeader& header, const PageOrder& order,
                                const PdfLimits& limits) {
    if (!pdf::sidesAllowed(header.width, header.height, limits.mostPointsPerSide)) return {};
    if (!pdf::hasGoodText(header)) return {};
    SharpPage page;
    page.fitted = fittedPage(header.width, header.height, order.resolution, order.fit);
    if (!isDrawable(page.fitted) || !hasWindow(header, page.fitted)) return {};
    page.outcome = PdfOutcome::kDrawn;
    page.pages = header.pages;
    page.widthPoints = header.width;
    page.heightPoints = header.height;
    page.smallestTextPoints = header.smallestText;
    return page;
}

SharpPage pageOf(pdf::StartedHelper helper, const PageOrder& order) {
    if (!helper.answer) return refused(helper.failure);
    AnswerReader& answer = *helper.answer;
    const std::optional<AnswerHeader> header = answer.header();
    if (!header) return refused(answer.failure(), answer.pages());
    std::optional<SharpPage> page = pageOf(*header, order, answer.limits());
    if (!page) return refused(PdfOutcome::kHelperFailed);
    page->rows = std::make_unique<PageRows>(std::move(answer),
                                            static_cast<std::int32_t>(page->fitted.windowWidth),
                                            static_cast<std::int32_t>(page->fitted.windowHeight));
    return *std::move(page);
}

pdf::PageRequest requestOf(const PageOrder& order) {
    return {order.page, argumentsOf(order)};
}

// The page that `start` asks for; it may throw.
template <typename Start>
SharpPage withoutException(const PageOrder& order, Start start) noexcept {
    try {
        return pageOf(start(), order);
    } catch (const std::bad_alloc&) {
        return refused(PdfOutcome::kMemoryLimit);
    } catch (...) {
        return refused(PdfOutcome::kHelperFailed);
    }
}

}  // namespace

SharpPage drawPage(std::span<const Byte> document, const PageOrder& order, const PdfLimits& limits,
                   const std::string& helper) noexcept {
    return withoutException(
        order, [&] { return pdf::startHelper(document, requestOf(order), limits, helper); });
}

SharpPage drawPage(pdf::OpenDocument& document, const PageOrder& order) noexcept {
    return withoutException(order, [&] { return document.start(requestOf(order)); });
}

}  // namespace tavio::sharp
