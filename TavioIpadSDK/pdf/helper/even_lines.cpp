// The engine calls the graphics library's functions, and finds those of this program first.
#include "TavioIpadSDK/pdf/helper/even_lines.h"

#include <algorithm>
#include <cmath>
#include <dlfcn.h>
#include <vector>

#include "TavioIpadSDK/pdf/helper/dot_path.h"

namespace tavio::pdf_helper {

namespace {

constinit cairo_surface_t* evenSurface = nullptr;
constinit int evenPixelsPerDot = 1;

using Draw = void(cairo_t*);

Draw* original(const char* name) {
    return reinterpret_cast<Draw*>(::dlsym(RTLD_NEXT, name));
}

bool isEven(cairo_t* context) {
    return evenSurface != nullptr && cairo_get_target(context) == evenSurface;
}

// Dots to a unit of the context's coordinates, their mean over all directions.
double dotsPerUnit(cairo_t* context) {
    cairo_matrix_t matrix{};
    cairo_get_matrix(context, &matrix);
    return std::sqrt(std::abs(matrix.xx * matrix.yy - matrix.xy * matrix.yx)) / evenPixelsPerDot;
}

bool hasUprightLine(const std::vector<Outline>& outlines) {
    return std::ranges::any_of(outlines, [](const Outline& outline) {
        return std::ranges::any_of(outline.nodes, [](const Node& node) {
            return node.isOnVertical || node.isOnHorizontal;
        });
    });
}

// Adjusts the path and returns the width in dots that its stroke is to have.
double adjustStroke(cairo_t* context, double width) {
    std::vector<Outline> outlines = outlinesOf(context, evenPixelsPerDot);
    if (!hasUprightLine(outlines) || formAnArea(outlines, width)) return std::max(width, 1.0);
    constexpr double kMaxDots = 1000;
    const int dots = static_cast<int>(std::lround(std::clamp(width, 1.0, kMaxDots)));
    if (width > kMaxDots) return width;
    alignStrokes(outlines, dots);
    setOutlines(context, outlines, evenPixelsPerDot);
    return dots;
}

void strokeEvenly(cairo_t* context, Draw* stroke) {
    const double scale = dotsPerUnit(context);
    if (!(scale > 0) || !std::isfinite(scale)) return stroke(context);
    const double width = cairo_get_line_width(context);
    cairo_set_line_width(context, adjustStroke(context, width * scale) / scale);
    stroke(context);
    cairo_set_line_width(context, width);
}

void fillEvenly(cairo_t* context, Draw* fill) {
    std::vector<Outline> outlines = outlinesOf(context, evenPixelsPerDot);
    const auto widened = std::ranges::count_if(outlines, widenThinRectangle);
    if (widened > 0) setOutlines(context, outlines, evenPixelsPerDot);
    fill(context);
}

}  // namespace

void keepLinesEven(cairo_surface_t* surface, int pixelsPerDot) {
    evenSurface = surface;
    evenPixelsPerDot = pixelsPerDot;
}

}  // namespace tavio::pdf_helper

using namespace tavio::pdf_helper;

extern "C" {

void cairo_stroke(cairo_t* context) {
    static Draw* const stroke = original("cairo_stroke");
    isEven(context) ? strokeEvenly(context, stroke) : stroke(context);
}

void cairo_fill(cairo_t* context) {
    static Draw* const fill = original("cairo_fill");
    isEven(context) ? fillEvenly(context, fill) : fill(context);
}

}  // extern "C"
