#include "tavio/printing/placed_dots.h"

#include <stdexcept>
#include <utility>

#include "TavioIpadSDK/encoder/encode_bitmap.h"
#include "TavioIpadSDK/sharp/encode_dots.h"
#include "tavio/printing/box.h"
#include "tavio/printing/fit_warnings.h"
#include "tavio/printing/read_source.h"

namespace tavio::printing {

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

Expected<EncodedParts, Problem> appendPlaced(PlacedDots placed, const Layout& layout,
                                             Bytes& bytes) {
    if (auto problem = problemOfPlace(placed.name, placed.rectangle, layout))
        return tl::unexpected(std::move(*problem));
    try {
        appendPicture(placed.dots, dotsPlaceOf(layout, placed.rectangle),
                      encoder::openingCommands(layout.path, layout.orientation), bytes);
    } catch (const std::length_error&) {
        return tooLarge(placed.name, placed.rectangle.size);
    }
    EncodedParts parts;
    parts.size = placed.rectangle.size;
    parts.rectangle = placed.rectangle;
    parts.warnings = std::move(placed.warnings);
    return parts;
}

}  // namespace tavio::printing
