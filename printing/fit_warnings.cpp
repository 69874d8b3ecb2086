#include "tavio/printing/fit_warnings.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>
#include <utility>

namespace tavio::printing {
namespace {

using intake::DotSize;

Warning warning(WarningKind kind, std::int64_t count, std::string sentence) {
    return {kind, 0, 0, count, std::move(sentence)};
}

std::string counted(std::int64_t count, const char* what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

// Only whole bands of 8 rows are sent; the first band of a logo is not stored.
std::optional<Warning> fewRows(DotSize size, bool isLogo) {
    const std::int32_t needed = isLogo ? 16 : 8;
    if (size.height >= needed) return std::nullopt;
    const char* nothing = isLogo ? " rows nothing is stored as a logo" : " rows nothing prints";
    return warning(
        WarningKind::kFewRows, 0,
        "the picture is " + dotsText(size) + ": of fewer than " + std::to_string(needed) + nothing);
}

// The number of dots by which the rectangle reaches past the ticket, 0 or more.
std::int64_t dotsBeyond(const Rectangle& rectangle, Size ticket) {
    return std::max({std::int64_t{0}, -rectangle.left, -rectangle.top,
                     rectangle.left + rectangle.size.width - ticket.width,
                     rectangle.top + rectangle.size.height - ticket.height});
}

std::optional<Warning> rowsLost(const Losses& losses, bool isLogo) {
    if (losses.rows == 0) return std::nullopt;
    const char* why = isLogo ? ": the top 8 rows of a logo are not stored, nor rows at the bottom "
                               "that do not fill 8"
                             : ": rows at the bottom that do not fill 8 are left out";
    return warning(WarningKind::kRowsLost, losses.rows,
                   counted(losses.rows, "row") + " with black dots " +
                       (losses.rows == 1 ? "is" : "are") + " lost" + why);
}

std::optional<Warning> columnsLost(const Losses& losses) {
    if (losses.columns == 0) return std::nullopt;
    return warning(WarningKind::kColumnsLost, losses.columns,
                   counted(losses.columns, "column") + " with black dots at the right " +
                       (losses.columns == 1 ? "is" : "are") +
                       " lost: make the width a multiple of 32");
}

}  // namespace

std::string dotsText(DotSize size) {
    return std::to_string(size.width) + " x " + std::to_string(size.height) + " dots";
}

std::optional<Warning> beyondTicket(const Rectangle& rectangle, const Layout& layout,
                                    const std::string& name) {
    const std::int64_t beyond = dotsBeyond(rectangle, layout.ticket);
    if (beyond == 0) return std::nullopt;
    const Size& size = rectangle.size;
    const std::string ticket =
        "the ticket of " + dotsText({layout.ticket.width, layout.ticket.height});
    std::string sentence = name + " of " + dotsText({size.width, size.height});
    if (size.width > layout.ticket.width || size.height > layout.ticket.height) {
        sentence += " is larger than " + ticket;
    } else {
        const std::int64_t row = layout.isLandscape ? rectangle.top : rectangle.left;
        const std::int64_t column = layout.isLandscape ? rectangle.left : rectangle.top;
        sentence += " at row " + std::to_string(row) + ", column " + std::to_string(column) +
                    " reaches beyond " + ticket;
    }
    return warning(WarningKind::kBeyondTicket, beyond, std::move(sentence));
}

std::string decimalText(double number) {
    const auto tenths = static_cast<std::int64_t>(std::floor(number * 10));
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10);
}

std::optional<Warning> coarseText(const std::string& name, double points) {
    if (points <= 0 || points >= kMinFaceDots) return std::nullopt;
    return warning(WarningKind::kSmallText, static_cast<std::int64_t>(std::floor(points)),
                   name + " has text of " + decimalText(points) +
                       " points, which the classic way draws too coarsely to be read: draw it "
                       "sharply");
}

std::vector<Warning> pictureWarnings(const EncodedPicture& picture, const Layout& layout) {
    std::vector<Warning> warnings;
    const auto add = [&warnings](std::optional<Warning> found) {
        if (found) warnings.push_back(std::move(*found));
    };
    const auto nothingPrints = fewRows(picture.size, picture.isLogo);
    add(nothingPrints);
    add(beyondTicket(rectangleAt(layout, picture.place, {picture.size.width, picture.size.height}),
                     layout));
    if (!nothingPrints) {
        add(rowsLost(picture.losses, picture.isLogo));
        add(columnsLost(picture.losses));
    }
    if (picture.isTransparent) {
        add(warning(WarningKind::kTransparentParts, 0,
                    "the picture has transparent parts, which print black: put it on white"));
    }
    return warnings;
}

}  // namespace tavio::printing
