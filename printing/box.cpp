#include "tavio/printing/box.h"

#include <algorithm>
#include <limits>
#include <string>

#include "tavio/printing/fit_warnings.h"
#include "tavio/printing/read_source.h"

namespace tavio::printing {
namespace {

std::int64_t shifted(std::int32_t room, std::int32_t side, int position) {
    return std::max<std::int64_t>(std::int64_t{room} - side, 0) * position / 2;
}

// One that the printer cannot name stays one.
std::int32_t position(std::int64_t dot) {
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(dot, Limits::min(), Limits::max()));
}

std::string placeText(Place place) {
    return "row " + std::to_string(place.row) + ", column " + std::to_string(place.column);
}

}  // namespace

int columnOf(Align align) {
    return static_cast<int>(align) % 3;
}

int rowOf(Align align) {
    return static_cast<int>(align) / 3;
}

Expected<Box, Problem> boxOf(const Layout& layout, Place place, std::int32_t margin) {
    if (margin < 0)
        return problem(ProblemKind::kBadSetting, "the margin is negative: give 0 dots or more");
    const Rectangle corner = rectangleAt(layout, place, {});
    const std::int64_t left = corner.left + margin;
    const std::int64_t top = corner.top + margin;
    const std::int64_t width = layout.ticket.width - margin - left;
    const std::int64_t height = layout.ticket.height - margin - top;
    if (corner.left < 0 || corner.top < 0 || width < 1 || height < 1) {
        std::string sentence = placeText(place);
        if (margin > 0) sentence += " with a margin of " + std::to_string(margin) + " dots";
        return problem(ProblemKind::kBadPlace,
                       sentence + " has no room on the ticket of " +
                           dotsText({layout.ticket.width, layout.ticket.height}));
    }
    return Box{static_cast<std::int32_t>(left), static_cast<std::int32_t>(top),
               static_cast<std::int32_t>(width), static_cast<std::int32_t>(height)};
}

sharp::FitRules fitRules(const Box& box, const DrawOptions& options) {
    return {options.fit, options.turn, box.width, box.height};
}

Rectangle alignedIn(const Box& box, Align align, Size size) {
    return {box.left + shifted(box.width, size.width, columnOf(align)),
            box.top + shifted(box.height, size.height, rowOf(align)), size};
}

sharp::DotsPlace dotsPlaceOf(const Layout& layout, const Rectangle& rectangle) {
    if (layout.isLandscape) return {true, position(rectangle.top), position(rectangle.left)};
    return {false, position(layout.portraitEdge - rectangle.left), position(rectangle.top)};
}

sharp::DotsPlace calibratedPlaceOf(const Layout& layout, const Rectangle& rectangle) {
    const sharp::DotsPlace place = dotsPlaceOf(layout, rectangle);
    return {place.isLandscape, position(std::int64_t{place.row} + layout.movedRows),
            position(std::int64_t{place.column} + layout.movedColumns)};
}

}  // namespace tavio::printing
