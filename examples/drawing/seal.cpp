#include <numbers>

#include "examples/drawing/cairo.h"
#include "examples/drawing/samples.h"

namespace tavio::examples {

namespace {

constexpr int kSide = 240;
constexpr Point kCentre{120, 120};
constexpr double kPi = std::numbers::pi;

void ring(cairo_t* c, double radius, double thickness) {
    cairo_new_path(c);
    cairo_arc(c, kCentre.x, kCentre.y, radius, 0, 2 * kPi);
    cairo_set_line_width(c, thickness);
    cairo_stroke(c);
}

// A dot on either side between the two lines of writing.
void separators(cairo_t* c, double radius) {
    for (double side : {-1.0, 1.0}) {
        cairo_arc(c, kCentre.x + side * radius, kCentre.y, 4, 0, 2 * kPi);
        cairo_fill(c);
    }
}

void lighthouse(cairo_t* c) {
    cairo_move_to(c, 108, 98);  // tower
    cairo_line_to(c, 132, 98);
    cairo_line_to(c, 138, 152);
    cairo_line_to(c, 102, 152);
    cairo_close_path(c);
    cairo_fill(c);
    cairo_rectangle(c, 103, 91, 34, 5);  // gallery
    cairo_rectangle(c, 111, 76, 4, 16);  // lantern
    cairo_rectangle(c, 125, 76, 4, 16);
    cairo_fill(c);
    cairo_move_to(c, 106, 77);  // roof
    cairo_line_to(c, 120, 62);
    cairo_line_to(c, 134, 77);
    cairo_close_path(c);
    cairo_fill(c);
    grey(c, 1);
    cairo_rectangle(c, 100, 112, 40, 8);  // stripes
    cairo_rectangle(c, 100, 130, 40, 8);
    cairo_fill(c);
    grey(c, 0);
}

void beams(cairo_t* c) {
    cairo_set_line_width(c, 3.5);
    for (double side : {-1.0, 1.0}) {
        for (double slope : {-0.42, 0.0, 0.42}) {
            cairo_move_to(c, kCentre.x + side * 18, 84 + slope * 14);
            cairo_line_to(c, kCentre.x + side * 50, 84 + slope * 50);
            cairo_stroke(c);
        }
    }
}

}  // namespace

void drawSeal(const std::string& path) {
    const Surface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, kSide, kSide));
    const Context context(cairo_create(surface.get()));
    cairo_t* c = context.get();
    grey(c, 1);
    cairo_paint(c);
    grey(c, 0);
    ring(c, 109, 6);
    ring(c, 102, 2);
    ring(c, 70, 3);
    const Face face{"Nimbus Sans", 22, true, false, 3};
    drawOnCircle(c, face, kCentre, 78.5, false, "HARBOUR HALL");
    drawOnCircle(c, face, kCentre, 94.5, true, "BY THE WATER");
    separators(c, 86);
    lighthouse(c);
    beams(c);
    cairo_arc(c, kCentre.x, kCentre.y, 66, 0, 2 * kPi);
    cairo_clip(c);
    cairo_set_line_width(c, 3.5);
    drawWaves(c, {50, 151, 140, 33}, 3, 20);
    require(cairo_status(c));
    require(cairo_surface_write_to_png(surface.get(), path.c_str()));
}

}  // namespace tavio::examples
