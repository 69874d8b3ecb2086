// Lines that are at least one dot wide, and everywhere equally so.
#pragma once

#include <cairo.h>

namespace tavio::pdf_helper {

// From now on, what is stroked and filled in contexts of this surface is moved by less than a dot:
//
//   a stroke that is thinner than a dot is one dot wide; one with upright or level lines is a whole
//   number of dots wide, and these lines cover whole dots
//   a filled rectangle that is thinner than a dot covers whole dots in that direction
//
// The engine adjusts strokes by itself, but to the surface's pixels, of which there may be several to
// a dot, and does not adjust rectangles. pixelsPerDot: of the surface. null: as the engine does it.
void keepLinesEven(cairo_surface_t* surface, int pixelsPerDot);

}  // namespace tavio::pdf_helper
