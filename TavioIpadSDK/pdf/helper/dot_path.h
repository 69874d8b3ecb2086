// Outlines on the grid of dots.
#pragma once

#include <array>
#include <vector>

#include <cairo.h>

namespace tavio::pdf_helper {

// Lengths and places are in dots: a dot covers a place from one whole number to the next.
struct Place {
    double x = 0;
    double y = 0;
};

// A point of an outline with what leads to it.
struct Node {
    Place place;
    bool isCurve = false;           // a curve leads to it, else a line
    std::array<Place, 2> controls;  // of the curve
    bool isOnVertical = false;      // a line leads up or down to it or from it
    bool isOnHorizontal = false;    // a line leads sideways to it or from it
};

struct Outline {
    std::vector<Node> nodes;  // 1 or more
    bool isClosed = false;
};

// The current path of the context. pixelsPerDot: of the surface, in both directions.
std::vector<Outline> outlinesOf(cairo_t* context, int pixelsPerDot);

// Replaces the current path.
void setOutlines(cairo_t* context, const std::vector<Outline>& outlines, int pixelsPerDot);

// Moves vertical and horizontal lines sideways, so that strokes of this many dots cover whole dots.
void alignStrokes(std::vector<Outline>& outlines, int dots);

// True if strokes of this width would lie side by side without a gap, as the modules of a code that is
// drawn line by line.
bool formAnArea(const std::vector<Outline>& outlines, double width);

// Makes an upright rectangle that is thinner than a dot cover a row or a column of whole dots, and
// returns true. Leaves other outlines alone.
bool widenThinRectangle(Outline& outline);

}  // namespace tavio::pdf_helper
