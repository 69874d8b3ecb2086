#include "tavio/printing/sharp_graphics.h"

#include <stdexcept>
#include <string>
#include <utility>

#include "TavioIpadSDK/encoder/encode_bitmap.h"
#include "TavioIpadSDK/pictures/picture_rows.h"
#include "TavioIpadSDK/sharp/draw_page.h"
#include "TavioIpadSDK/sharp/encode_dots.h"
#include "TavioIpadSDK/sharp/halftone.h"
#include "tavio/printing/page_problem.h"
#include "tavio/printing/placed_dots.h"
#include "tavio/printing/read_document.h"
#include "tavio/printing/sharp_warnings.h"

namespace tavio::printing {
namespace {

sharp::Halftone halftoneOf(const DrawOptions& options) {
    const auto method = options.blackAndWhite == BlackAndWhite::kDithered
                            ? sharp::Method::kDithered
                            : sharp::Method::kThreshold;
    return {method, options.threshold, options.tone};
}

Expected<sharp::Dots, Problem> dotsOf(SharpDrawing& drawing, const SharpOrder& order) {
    try {
        return sharp::halftoned(*drawing.rows, halftoneOf(order.options), order.mayUseThreads);
    } catch (const sharp::UnfinishedPage& page) {
        return pageProblem(page.outcome, drawing.name, drawing.page->page, drawing.page->pages);
    } catch (const pictures::DamagedPicture& damage) {
        return noPicture(drawing.name, pictures::Refusal::kDamaged, damage.what());
    }
}

// The logo's place is not known yet: its corner is where its place will be.
std::optional<Problem> storeLogo(const sharp::Dots& dots, const std::string& name,
                                 std::int32_t number, const Layout& layout, Bytes& bytes) try {
    appendLogo(dots, dotsPlaceOf(layout, {0, 0, {dots.width, dots.height}}),
               encoder::openingCommands("", layout.orientation), number, bytes);
    return std::nullopt;
} catch (const std::length_error&) {
    return tooLarge(name, {dots.width, dots.height}).value();
}

}  // namespace

Expected<EncodedParts, Problem> appendSharp(SharpDrawing drawing, const Layout& layout,
                                            const SharpOrder& order, Bytes& bytes) {
    const Size size{drawing.rows->width(), drawing.rows->height()};
    const Rectangle rectangle = alignedIn(order.box, order.options.align, size);
    if (auto problem = problemOfPlace(drawing.name, rectangle, layout, "let it be fitted"))
        return tl::unexpected(std::move(*problem));
    const auto dots = dotsOf(drawing, order);
    if (!dots) return tl::unexpected(dots.error());
    auto problem = order.logo ? storeLogo(*dots, drawing.name, *order.logo, layout, bytes)
                              : appendDots(*dots, rectangle, drawing.name, layout, bytes);
    if (problem) return tl::unexpected(std::move(*problem));

    EncodedParts parts;
    parts.size = size;
    if (!order.logo) parts.rectangle = rectangle;
    parts.warnings = sharpWarnings({drawing, *dots, rectangle}, layout);
    parts.page = std::move(drawing.page);
    return parts;
}

}  // namespace tavio::printing
