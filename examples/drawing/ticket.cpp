#include <array>
#include <numbers>

#include "examples/drawing/pdf.h"
#include "examples/drawing/samples.h"

namespace tavio::examples {

namespace {

constexpr double kWidth = 396;
constexpr double kHeight = 144;
constexpr double kBand = 62;   // right end of the black band
constexpr double kTear = 318;  // where the stub is torn off
constexpr double kPi = std::numbers::pi;

void drawBorder(cairo_t* c) {
    ticketOutline(c, {5, 5, kWidth - 10, kHeight - 10}, 9);
    cairo_set_line_width(c, 2);
    cairo_stroke(c);
    ticketOutline(c, {9.5, 9.5, kWidth - 19, kHeight - 19}, 9);
    cairo_set_line_width(c, 1);
    cairo_stroke(c);
}

// The hall's name in white on black, read upwards, above the waters of the harbour.
void drawBand(cairo_t* c) {
    cairo_save(c);
    ticketOutline(c, {12, 12, kWidth - 24, kHeight - 24}, 9);
    cairo_clip(c);
    cairo_rectangle(c, 0, 0, kBand, kHeight);
    cairo_fill(c);
    cairo_restore(c);
    grey(c, 1);
    cairo_save(c);
    cairo_translate(c, 33, kHeight / 2);
    cairo_rotate(c, -kPi / 2);
    drawCentred(c, {"Nimbus Sans", 12.5, true, false, 0.6}, {0, 0}, "HARBOUR HALL");
    cairo_set_line_width(c, 1.6);
    drawWaves(c, {-49, 8, 98, 14}, 2, 14);
    cairo_restore(c);
    grey(c, 0);
}

struct Field {
    const char* label;
    const char* value;
    double width;
};

void drawField(cairo_t* c, const Field& field, double x, double y) {
    cairo_rectangle(c, x, y, field.width, 11);
    cairo_fill(c);
    cairo_set_line_width(c, 1);
    cairo_rectangle(c, x + 0.5, y + 0.5, field.width - 1, 34);
    cairo_stroke(c);
    const double middle = x + field.width / 2;
    grey(c, 1);
    drawCentred(c, {"Nimbus Sans", 8.5, true, false, 1}, {middle, y + 9}, field.label);
    grey(c, 0);
    drawCentred(c, {"Nimbus Sans", 22, true}, {middle, y + 31}, field.value);
}

void drawEvent(cairo_t* c) {
    const double left = kBand + 14;
    const double width = kTear - 12 - left;
    drawFitted(c, {"C059", 30, true, true}, {left, 48}, width, "Evening of Strings");
    cairo_set_line_width(c, 1);
    cairo_rectangle(c, left, 56, width, 1);
    cairo_fill(c);
    drawText(c, {"Nimbus Sans", 13, true}, {left, 73}, "Saturday 14 November");
    const Face time{"Nimbus Sans", 13, true};
    drawText(c, time, {left + width - textWidth(c, time, "8 pm"), 73}, "8 pm");
    constexpr std::array<Field, 4> kFields{
        {{"BLOCK", "B", 52}, {"ROW", "F", 52}, {"SEAT", "12", 52}, {"PRICE", "24", 52}}};
    double x = left;
    for (const Field& field : kFields) {
        drawField(c, field, x, 86);
        x += (width + 8) / kFields.size();
    }
}

void drawStubSide(cairo_t* c) {
    constexpr std::array<double, 2> kDashes{4, 4};
    cairo_set_dash(c, kDashes.data(), kDashes.size(), 0);
    cairo_set_line_width(c, 2);
    cairo_move_to(c, kTear, 12);
    cairo_line_to(c, kTear, kHeight - 12);
    cairo_stroke(c);
    cairo_set_dash(c, nullptr, 0, 0);
    drawBars(c, {330, 22, 30, 100});
    cairo_save(c);
    cairo_translate(c, 374, kHeight / 2);
    cairo_rotate(c, -kPi / 2);
    drawCentred(c, {"Nimbus Sans", 11, true, false, 1}, {0, 0}, "No. 004217");
    cairo_restore(c);
}

}  // namespace

void drawTicket(const std::string& path) {
    writePage(path, "Ticket", kWidth, kHeight, [](cairo_t* c) {
        drawBorder(c);
        drawBand(c);
        drawEvent(c);
        drawStubSide(c);
    });
}

void drawStub(const std::string& path) {
    constexpr double kSide = 138;
    writePage(path, "Stub", kSide, kSide, [](cairo_t* c) {
        cairo_set_line_width(c, 2);
        cairo_rectangle(c, 3, 3, kSide - 6, kSide - 6);
        cairo_stroke(c);
        cairo_set_line_width(c, 1);
        ticketOutline(c, {6.5, 6.5, kSide - 13, kSide - 13}, 7);
        cairo_stroke(c);
        const Face title{"C059", 23, true, true};
        drawCentred(c, title, {kSide / 2, 32}, "Evening");
        drawCentred(c, title, {kSide / 2, 53}, "of Strings");
        cairo_rectangle(c, 14, 60, kSide - 28, 1);
        cairo_fill(c);
        drawCentred(c, {"Nimbus Sans", 11.5, true}, {kSide / 2, 75}, "Sat 14 Nov  8 pm");
        drawField(c, {"ROW", "F", 52}, 14, 84);
        drawField(c, {"SEAT", "12", 52}, kSide - 66, 84);
    });
}

}  // namespace tavio::examples
