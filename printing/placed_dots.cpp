#include "tavio/printing/placed_dots.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <utility>

#include "TavioIpadSDK/encoder/encode_bitmap.h"
#include "TavioIpadSDK/sharp/crop_dots.h"
#include "TavioIpadSDK/sharp/encode_dots.h"
#include "tavio/printing/box.h"
#include "tavio/printing/fit_warnings.h"
#include "tavio/printing/read_source.h"

namespace tavio::printing {
namespace {

struct Range {
    std::int32_t begin = 0;
    std::int32_t end = 0;
};

// Those of `count` dots, counted from 0, whose positions from `first` on the printer can name.
Range namedDots(std::int64_t first, std::int32_t count) {
    const auto limited = [count](std::int64_t dot) {
        return static_cast<std::int32_t>(std::clamp<std::int64_t>(dot, 0, count));
    };
    return {limited(-first), limited(std::int64_t{sharp::kMaxPosition} + 1 - first)};
}

// The same where positions fall from `first` on.
Range namedDotsBack(std::int64_t first, std::int32_t count) {
    return namedDots(sharp::kMaxPosition - first, count);
}

// The dots whose places the printer can name.
sharp::DotArea namedArea(const sharp::Dots& dots, const sharp::DotsPlace& place) {
    const Range across = place.isLandscape ? namedDots(place.column, dots.width)
                                           : namedDotsBack(place.row, dots.width);
    const Range down = namedDots(place.isLandscape ? place.row : place.column, dots.height);
    return {across.begin, down.begin, across.end - across.begin, down.end - down.begin};
}

Problem movedTooFar(const std::string& name, const Layout& layout) {
    return problem(ProblemKind::kBadPlace,
                   name + " has black dots which the printer's calibration moves by " +
                       std::to_string(layout.movedColumns) + " columns and " +
                       std::to_string(layout.movedRows) +
                       " rows to where the printer has none: move it away from the ticket's edge")
        .value();
}

}  // namespace

std::optional<Problem> problemOfPlace(const std::string& name, const Rectangle& rectangle,
                                      const Layout& layout, const char* cure) {
    const Size size = rectangle.size;
    if (sharp::canBePlaced(size.width, size.height, dotsPlaceOf(layout, rectangle)))
        return std::nullopt;
    return problem(ProblemKind::kBadPlace,
                   name + " of " + dotsText({size.width, size.height}) +
                       " reaches beyond the ticket of " +
                       dotsText({layout.ticket.width, layout.ticket.height}) +
                       " to where the printer has no rows or columns: " + cure)
        .value();
}

tl::unexpected<Problem> tooLarge(const std::string& name, Size size) {
    return problem(ProblemKind::kTooLarge, name + " comes to " +
                                               dotsText({size.width, size.height}) +
                                               ", more than can be printed: make it smaller");
}

std::optional<Problem> appendDots(const sharp::Dots& dots, const Rectangle& rectangle,
                                  const std::string& name, const Layout& layout, Bytes& bytes) try {
    const std::string opening = encoder::openingCommands(layout.path, layout.orientation);
    const sharp::DotsPlace place = calibratedPlaceOf(layout, rectangle);
    if (sharp::canBePlaced(dots.width, dots.height, place)) {
        appendPicture(dots, place, opening, bytes);
        return std::nullopt;
    }
    const sharp::DotArea area = namedArea(dots, place);
    const sharp::Dots part = sharp::croppedDots(dots, area);
    const std::int64_t black = sharp::blackDots(part);
    if (black < sharp::blackDots(dots)) return movedTooFar(name, layout);
    const auto [row, column] = positionOf(place, area.left, area.top);
    if (black == 0) {
        bytes.insert(bytes.end(), opening.begin(), opening.end());
    } else {
        appendPicture(part, {place.isLandscape, row, column}, opening, bytes);
    }
    return std::nullopt;
} catch (const std::length_error&) {
    return tooLarge(name, rectangle.size).value();
}

Expected<EncodedParts, Problem> appendPlaced(PlacedDots placed, const Layout& layout,
                                             Bytes& bytes) {
    if (auto problem = problemOfPlace(placed.name, placed.rectangle, layout))
        return tl::unexpected(std::move(*problem));
    if (auto problem = appendDots(placed.dots, placed.rectangle, placed.name, layout, bytes))
        return tl::unexpected(std::move(*problem));
    EncodedParts parts;
    parts.size = placed.rectangle.size;
    parts.rectangle = placed.rectangle;
    parts.warnings = std::move(placed.warnings);
    return parts;
}

}  // namespace tavio::printing
