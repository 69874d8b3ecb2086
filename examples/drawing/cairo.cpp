#include "examples/drawing/cairo.h"

#include <cmath>
#include <numbers>

namespace tavio::examples {

namespace {

constexpr double kPi = std::numbers::pi;

void select(cairo_t* c, const Face& face) {
    cairo_select_font_face(c, face.family,
                           face.italic ? CAIRO_FONT_SLANT_ITALIC : CAIRO_FONT_SLANT_NORMAL,
                           face.bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(c, face.size);
}

double advance(cairo_t* c, const std::string& text) {
    cairo_text_extents_t extents{};
    cairo_text_extents(c, text.c_str(), &extents);
    return extents.x_advance;
}

}  // namespace

void grey(cairo_t* c, double level) {
    cairo_set_source_rgb(c, level, level, level);
}

double textWidth(cairo_t* c, const Face& face, const std::string& text) {
    select(c, face);
    if (text.empty()) return 0;
    return advance(c, text) + face.spacing * static_cast<double>(text.size() - 1);
}

void drawText(cairo_t* c, const Face& face, Point at, const std::string& text) {
    select(c, face);
    cairo_move_to(c, at.x, at.y);
    if (face.spacing == 0) {
        cairo_show_text(c, text.c_str());
        return;
    }
    for (char letter : text) {
        cairo_show_text(c, std::string(1, letter).c_str());
        cairo_rel_move_to(c, face.spacing, 0);
    }
}

void drawCentred(cairo_t* c, const Face& face, Point at, const std::string& text) {
    drawText(c, face, {at.x - textWidth(c, face, text) / 2, at.y}, text);
}

void drawFitted(cairo_t* c, Face face, Point at, double width, const std::string& text) {
    face.size *= width / textWidth(c, face, text);
    drawText(c, face, at, text);
}

void drawOnCircle(cairo_t* c, const Face& face, Point centre, double radius, bool atBottom,
                  const std::string& text) {
    const double turn = atBottom ? -1 : 1;
    double angle = -turn * textWidth(c, face, text) / radius / 2;
    for (char letter : text) {
        const std::string one(1, letter);
        const double width = advance(c, one);
        cairo_save(c);
        cairo_translate(c, centre.x, centre.y);
        cairo_rotate(c, angle + turn * width / radius / 2);
        cairo_move_to(c, -width / 2, atBottom ? radius : -radius);
        cairo_show_text(c, one.c_str());
        cairo_restore(c);
        angle += turn * (width + face.spacing) / radius;
    }
    cairo_new_path(c);
}

void drawWaves(cairo_t* c, const Box& box, int count, double length) {
    const double height = box.height / count;
    const double amplitude = height * 0.5;
    const double half = length / 2;
    const int waves = static_cast<int>(std::ceil(box.width / length)) + 1;
    const double bend = length * 0.18;  // as near to a sine as one curve comes
    cairo_save(c);
    cairo_rectangle(c, box.x, box.y, box.width, box.height);
    cairo_clip(c);
    for (int line = 0; line < count; ++line) {
        const double y = box.y + height * (line + 0.5);
        cairo_move_to(c, box.x - length, y);
        for (int wave = 0; wave < waves; ++wave) {
            cairo_rel_curve_to(c, bend, -amplitude, half - bend, -amplitude, half, 0);
            cairo_rel_curve_to(c, bend, amplitude, half - bend, amplitude, half, 0);
        }
        cairo_stroke(c);
    }
    cairo_restore(c);
}

void ticketOutline(cairo_t* c, const Box& box, double bite) {
    const double right = box.x + box.width;
    const double bottom = box.y + box.height;
    cairo_new_path(c);
    cairo_arc_negative(c, box.x, box.y, bite, kPi / 2, 0);
    cairo_arc_negative(c, right, box.y, bite, kPi, kPi / 2);
    cairo_arc_negative(c, right, bottom, bite, -kPi / 2, -kPi);
    cairo_arc_negative(c, box.x, bottom, bite, 0, -kPi / 2);
    cairo_close_path(c);
}

}  // namespace tavio::examples
