// Cairo with owners that clean up, and the few shapes that all samples use.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>

#include <cairo.h>

namespace tavio::examples {

struct CairoDeleter {
    void operator()(cairo_t* context) const { cairo_destroy(context); }
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
using Surface = std::unique_ptr<cairo_surface_t, CairoDeleter>;
using Context = std::unique_ptr<cairo_t, CairoDeleter>;

// Throws after an error of cairo.
inline void require(cairo_status_t status) {
    if (status != CAIRO_STATUS_SUCCESS) throw std::runtime_error(cairo_status_to_string(status));
}

struct Point {
    double x = 0;
    double y = 0;
};

struct Box {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
};

// How a line of text looks; sizes in user units.
struct Face {
    const char* family = "Nimbus Sans";
    double size = 10;
    bool bold = false;
    bool italic = false;
    double spacing = 0;  // added between letters
};

void grey(cairo_t* c, double level);  // 0 black, 1 white

double textWidth(cairo_t* c, const Face& face, const std::string& text);

// ASCII text with its baseline at `at`, from there to the right, or centred there.
void drawText(cairo_t* c, const Face& face, Point at, const std::string& text);
void drawCentred(cairo_t* c, const Face& face, Point at, const std::string& text);

// Text that is scaled to fill the width exactly.
void drawFitted(cairo_t* c, Face face, Point at, double width, const std::string& text);

// Letters along a circle, centred on the top of it, reading clockwise; or on its bottom, reading
// counterclockwise. `radius` is that of the baseline.
void drawOnCircle(cairo_t* c, const Face& face, Point centre, double radius, bool atBottom,
                  const std::string& text);

// Lines that repeat over the whole width: a strip of water.
void drawWaves(cairo_t* c, const Box& box, int count, double length);

// A box whose corners are bitten off, as tickets have them.
void ticketOutline(cairo_t* c, const Box& box, double bite);

}  // namespace tavio::examples
