#include "tavio/printing/shape_dots.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>

#include "TavioIpadSDK/sharp/blacken.h"
#include "tavio/printing/fit_warnings.h"
#include "tavio/printing/read_source.h"

namespace tavio::printing {
namespace {

// A shape that is still white, or why there can be none of this size at this place.
Expected<PlacedDots, Problem> whiteShape(std::string name, Place place, Size size,
                                         const Layout& layout) {
    if (std::int64_t{size.width} * size.height > sharp::kMaxDots) return tooLarge(name, size);
    const Rectangle rectangle = rectangleAt(layout, place, size);
    if (auto problem = problemOfPlace(name, rectangle, layout))
        return tl::unexpected(std::move(*problem));
    PlacedDots shape{sharp::whiteDots(size.width, size.height), rectangle, std::move(name), {}};
    if (auto beyond = beyondTicket(rectangle, layout, shape.name))
        shape.warnings.push_back(std::move(*beyond));
    return shape;
}

std::optional<Problem> problemOf(const element::Line& line) {
    const LineOptions& options = line.options;
    if (line.length >= 1 && options.thickness >= 1 && options.dash >= 0) return std::nullopt;
    return problem(ProblemKind::kBadSetting,
                   "a line is " + std::to_string(line.length) + " dots long and " +
                       std::to_string(options.thickness) + " thick, with dashes of " +
                       std::to_string(options.dash) +
                       ": give a length and a thickness of 1 or more, and dashes of 0 or more")
        .value();
}

std::optional<Problem> problemOf(const element::Box& box) {
    if (box.size.width >= 1 && box.size.height >= 1 && box.options.thickness >= 1)
        return std::nullopt;
    return problem(ProblemKind::kBadSetting,
                   "a box is " + dotsText({box.size.width, box.size.height}) + " with a frame of " +
                       std::to_string(box.options.thickness) +
                       ": give 1 dot or more for each of them")
        .value();
}

// Calls draw(begin, length) for each dash of a line; a solid line is one dash.
template <typename Draw>
void forEachDash(std::int32_t length, std::int32_t dash, Draw draw) {
    if (dash == 0) return draw(0, length);
    for (std::int64_t begin = 0; begin < length; begin += std::int64_t{2} * dash) {
        const auto at = static_cast<std::int32_t>(begin);
        draw(at, std::min(dash, length - at));
    }
}

void drawAcross(sharp::Dots& dots, std::int32_t dash) {
    forEachDash(dots.width, dash, [&dots](std::int32_t begin, std::int32_t length) {
        sharp::blacken(dots, {begin, 0, length, 1});
    });
    const auto first = std::as_const(dots).row(0);
    for (std::int32_t row = 1; row < dots.height; ++row)
        std::ranges::copy(first, dots.row(row).begin());
}

void drawDown(sharp::Dots& dots, std::int32_t dash) {
    forEachDash(dots.height, dash, [&dots](std::int32_t begin, std::int32_t length) {
        sharp::blacken(dots, {0, begin, dots.width, length});
    });
}

void drawFrame(sharp::Dots& dots, std::int32_t thickness) {
    const std::int32_t across = std::min(thickness, dots.height);
    const std::int32_t down = std::min(thickness, dots.width);
    sharp::blacken(dots, {0, 0, dots.width, across});
    sharp::blacken(dots, {0, dots.height - across, dots.width, across});
    sharp::blacken(dots, {0, 0, down, dots.height});
    sharp::blacken(dots, {dots.width - down, 0, down, dots.height});
}

}  // namespace

Expected<PlacedDots, Problem> lineDots(const element::Line& line, const Layout& layout) {
    if (auto problem = problemOf(line)) return tl::unexpected(std::move(*problem));
    const LineOptions& options = line.options;
    const bool isAcross = options.direction == LineDirection::kAcross;
    const Size size =
        isAcross ? Size{line.length, options.thickness} : Size{options.thickness, line.length};
    auto shape = whiteShape("the line", line.place, size, layout);
    if (shape) (isAcross ? drawAcross : drawDown)(shape->dots, options.dash);
    return shape;
}

Expected<PlacedDots, Problem> boxDots(const element::Box& box, const Layout& layout) {
    if (auto problem = problemOf(box)) return tl::unexpected(std::move(*problem));
    auto shape = whiteShape("the box", box.place, box.size, layout);
    if (!shape) return shape;
    if (box.options.isFilled) {
        sharp::blacken(shape->dots, {0, 0, box.size.width, box.size.height});
    } else {
        drawFrame(shape->dots, box.options.thickness);
    }
    return shape;
}

}  // namespace tavio::printing
