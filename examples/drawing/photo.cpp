#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <numbers>
#include <span>
#include <vector>

#include <jpeglib.h>

#include "examples/drawing/cairo.h"
#include "examples/drawing/samples.h"

namespace tavio::examples {

namespace {

constexpr int kSide = 576;
constexpr int kMargin = 8;  // white; whole JPEG blocks of 8, so that it stays white
constexpr double kHorizon = 330;
constexpr Point kSun{372, 262};
constexpr double kPi = std::numbers::pi;

using Pattern = std::unique_ptr<cairo_pattern_t, decltype(&cairo_pattern_destroy)>;

struct Stop {
    double at, red, green, blue, alpha;
};

void fillWith(cairo_t* c, cairo_pattern_t* made, std::span<const Stop> stops) {
    const Pattern pattern(made, cairo_pattern_destroy);
    for (const Stop& s : stops) {
        cairo_pattern_add_color_stop_rgba(pattern.get(), s.at, s.red, s.green, s.blue, s.alpha);
    }
    cairo_set_source(c, pattern.get());
    cairo_fill(c);
}

void sky(cairo_t* c) {
    constexpr std::array<Stop, 4> kSky{{{0, 0.46, 0.54, 0.63, 1},
                                        {0.45, 0.68, 0.75, 0.82, 1},
                                        {0.8, 0.88, 0.87, 0.87, 1},
                                        {1, 0.97, 0.93, 0.88, 1}}};
    cairo_rectangle(c, 0, 0, kSide, kHorizon);
    fillWith(c, cairo_pattern_create_linear(0, 0, 0, kHorizon), kSky);
    constexpr std::array<Stop, 3> kGlow{
        {{0, 1, 1, 0.97, 1}, {0.3, 1, 0.98, 0.92, 0.55}, {1, 1, 0.97, 0.9, 0}}};
    cairo_rectangle(c, 0, 0, kSide, kHorizon);
    fillWith(c, cairo_pattern_create_radial(kSun.x, kSun.y, 34, kSun.x, kSun.y, 210), kGlow);
    cairo_set_source_rgb(c, 1, 1, 1);
    cairo_arc(c, kSun.x, kSun.y, 40, 0, 2 * kPi);
    cairo_fill(c);
}

// A flat cloud of overlapping discs, lit from below.
void cloud(cairo_t* c, Point at, double size, double alpha) {
    constexpr std::array<std::array<double, 3>, 6> kPuffs{{{-1.5, 0.1, 0.42},
                                                           {-0.9, -0.1, 0.6},
                                                           {-0.1, -0.25, 0.75},
                                                           {0.75, -0.1, 0.6},
                                                           {1.4, 0.08, 0.45},
                                                           {2.0, 0.15, 0.3}}};
    cairo_save(c);
    cairo_translate(c, at.x, at.y);
    cairo_scale(c, size, size * 0.42);
    for (const auto& [x, y, radius] : kPuffs) {
        cairo_new_sub_path(c);
        cairo_arc(c, x, y, radius, 0, 2 * kPi);
    }
    const std::array<Stop, 2> lit{{{0, 0.93, 0.94, 0.96, alpha}, {1, 1, 0.99, 0.97, alpha * 0.5}}};
    fillWith(c, cairo_pattern_create_linear(0, -1, 0, 0.6), lit);
    cairo_restore(c);
}

struct Hill {
    double top, height, wave, phase, level;
};

void hill(cairo_t* c, const Hill& hill) {
    cairo_move_to(c, 0, kHorizon);
    for (int x = 0; x <= kSide; x += 4) {
        const double t = x * hill.wave + hill.phase;
        const double y = 0.6 * std::sin(t) + 0.25 * std::sin(2.3 * t + 1) + 0.1 * std::sin(6 * t);
        cairo_line_to(c, x, kHorizon - hill.top - hill.height * y);
    }
    cairo_line_to(c, kSide, kHorizon);
    cairo_close_path(c);
    const double level = hill.level;
    const std::array<Stop, 2> shade{{{0, level * 0.85, level * 0.92, level, 1},
                                     {1, level * 1.25, level * 1.3, level * 1.35, 1}}};
    fillWith(c, cairo_pattern_create_linear(0, kHorizon - hill.top - hill.height, 0, kHorizon),
             shade);
}

// Numbers from 0 to 1, the same at every run.
class Chance {
  public:
    double next() {
        state_ = state_ * 1664525U + 1013904223U;
        return static_cast<double>(state_ >> 8U) / 16777216.0;
    }

  private:
    std::uint32_t state_ = 7;
};

void water(cairo_t* c) {
    constexpr std::array<Stop, 3> kWater{
        {{0, 0.84, 0.85, 0.86, 1}, {0.25, 0.62, 0.69, 0.76, 1}, {1, 0.20, 0.27, 0.36, 1}}};
    cairo_rectangle(c, 0, kHorizon, kSide, kSide - kHorizon);
    fillWith(c, cairo_pattern_create_linear(0, kHorizon, 0, kSide), kWater);
    Chance chance;
    double y = kHorizon + 4;
    while (y < kSide) {
        const double depth = (y - kHorizon) / (kSide - kHorizon);
        for (int ripple = 0; ripple < 7; ++ripple) {
            const double x = chance.next() * kSide;
            const double length = 10 + 50 * depth * chance.next();
            const double light = chance.next() < 0.5 ? 0 : 1;
            cairo_set_source_rgba(c, light, light, light, 0.10 + 0.12 * depth);
            cairo_set_line_width(c, 1 + 2.5 * depth);
            cairo_move_to(c, x, y);
            cairo_rel_line_to(c, length, 0);
            cairo_stroke(c);
        }
        y += 1.5 + (y - kHorizon) * 0.022;
    }
}

// The path of light below the sun.
void glitter(cairo_t* c) {
    Chance chance;
    cairo_set_line_cap(c, CAIRO_LINE_CAP_ROUND);
    double y = kHorizon + 3;
    while (y < kSide - 20) {
        const double depth = (y - kHorizon) / (kSide - kHorizon);
        const double spread = 26 + 34 * depth;
        for (int spark = 0; spark < 3; ++spark) {
            const double x = kSun.x + (chance.next() + chance.next() - 1) * spread;
            const double length = 8 + 26 * chance.next() * (0.4 + depth);
            cairo_set_source_rgba(c, 1, 1, 0.98, 0.9 - 0.35 * depth);
            cairo_set_line_width(c, 1.4 + 3 * depth);
            cairo_move_to(c, x - length / 2, y);
            cairo_rel_line_to(c, length, 0);
            cairo_stroke(c);
        }
        y += 2 + (y - kHorizon) * 0.028;
    }
}

// A curved sail from the top of the mast to the deck.
void sail(cairo_t* c, double top, double foot, double reach, double level) {
    cairo_move_to(c, 0, top);
    cairo_curve_to(c, reach * 0.5, top * 0.6, reach, top * 0.3, reach, foot);
    cairo_line_to(c, 0, foot);
    cairo_close_path(c);
    const std::array<Stop, 2> cloth{
        {{0, level, level, level, 1}, {1, level * 0.72, level * 0.74, level * 0.78, 1}}};
    fillWith(c, cairo_pattern_create_linear(0, 0, reach, 0), cloth);
}

// A sailing boat, its mast at x, its water line at y, and its reflection.
void boat(cairo_t* c, Point at, double size) {
    cairo_save(c);
    cairo_translate(c, at.x, at.y);
    cairo_scale(c, size, size);
    const std::array<Stop, 2> reflection{{{0, 0.05, 0.08, 0.12, 0.65}, {1, 0.05, 0.08, 0.12, 0}}};
    cairo_move_to(c, -42, 0);
    cairo_line_to(c, 46, 0);
    cairo_line_to(c, 12, 60);
    cairo_line_to(c, -14, 60);
    fillWith(c, cairo_pattern_create_linear(0, 0, 0, 60), reflection);
    sail(c, -128, -18, 50, 1);
    sail(c, -112, -16, -36, 0.93);
    cairo_set_source_rgb(c, 0.05, 0.06, 0.09);
    cairo_rectangle(c, -1.5, -134, 3, 124);  // mast
    cairo_move_to(c, -46, -13);              // hull
    cairo_line_to(c, 58, -13);
    cairo_curve_to(c, 50, 0, 44, 4, 34, 5);
    cairo_line_to(c, -32, 5);
    cairo_curve_to(c, -40, 2, -44, -6, -46, -13);
    cairo_fill(c);
    cairo_restore(c);
}

// The mole with its lighthouse, dark against the sky.
void mole(cairo_t* c) {
    cairo_set_source_rgb(c, 0.10, 0.12, 0.16);
    cairo_move_to(c, 0, kHorizon - 14);
    cairo_line_to(c, 132, kHorizon - 12);
    cairo_line_to(c, 160, kHorizon + 14);
    cairo_line_to(c, 0, kHorizon + 24);
    cairo_close_path(c);
    cairo_move_to(c, 82, kHorizon - 130);  // tower
    cairo_line_to(c, 108, kHorizon - 130);
    cairo_line_to(c, 118, kHorizon - 12);
    cairo_line_to(c, 72, kHorizon - 12);
    cairo_close_path(c);
    cairo_rectangle(c, 76, kHorizon - 138, 38, 6);  // gallery
    cairo_move_to(c, 80, kHorizon - 160);           // roof
    cairo_line_to(c, 95, kHorizon - 178);
    cairo_line_to(c, 110, kHorizon - 160);
    cairo_close_path(c);
    cairo_rectangle(c, 84, kHorizon - 160, 4, 24);
    cairo_rectangle(c, 102, kHorizon - 160, 4, 24);
    cairo_fill(c);
    cairo_set_source_rgb(c, 0.93, 0.93, 0.93);  // lantern and stripes
    cairo_rectangle(c, 88, kHorizon - 160, 14, 22);
    cairo_rectangle(c, 79.5, kHorizon - 106, 31, 18);
    cairo_rectangle(c, 76.5, kHorizon - 66, 37, 18);
    cairo_fill(c);
}

void gull(cairo_t* c, Point at, double size) {
    cairo_set_source_rgb(c, 0.08, 0.09, 0.12);
    cairo_set_line_width(c, 2.6);
    cairo_move_to(c, at.x - size, at.y - size * 0.3);
    cairo_curve_to(c, at.x - size * 0.6, at.y - size * 0.7, at.x - size * 0.2, at.y - size * 0.3,
                   at.x, at.y);
    cairo_curve_to(c, at.x + size * 0.2, at.y - size * 0.4, at.x + size * 0.6, at.y - size * 0.8,
                   at.x + size, at.y - size * 0.4);
    cairo_stroke(c);
}

void scene(cairo_t* c) {
    sky(c);
    cloud(c, {120, 84}, 58, 0.75);
    cloud(c, {430, 120}, 44, 0.6);
    cloud(c, {300, 48}, 36, 0.5);
    hill(c, {34, 26, 0.012, 0.6, 0.62});
    hill(c, {20, 22, 0.016, 2.9, 0.42});
    water(c);
    glitter(c);
    mole(c);
    boat(c, {268, 372}, 0.62);
    boat(c, {470, 478}, 1.35);
    gull(c, {210, 170}, 20);
    gull(c, {252, 148}, 14);
    gull(c, {176, 206}, 12);
    grey(c, 1);
    cairo_set_line_width(c, 2 * kMargin);
    cairo_rectangle(c, 0, 0, kSide, kSide);
    cairo_stroke(c);
}

using File = std::unique_ptr<std::FILE, decltype(&std::fclose)>;

void writeRows(jpeg_compress_struct& jpeg, cairo_surface_t* surface) {
    const unsigned char* pixels = cairo_image_surface_get_data(surface);
    const std::ptrdiff_t stride = cairo_image_surface_get_stride(surface);
    std::vector<JSAMPLE> row(std::size_t{3} * kSide);
    for (int y = 0; y < kSide; ++y) {
        const auto* words = reinterpret_cast<const std::uint32_t*>(pixels + y * stride);
        for (std::size_t x = 0; x < kSide; ++x) {
            row[3 * x] = static_cast<JSAMPLE>(words[x] >> 16U);
            row[3 * x + 1] = static_cast<JSAMPLE>(words[x] >> 8U);
            row[3 * x + 2] = static_cast<JSAMPLE>(words[x]);
        }
        JSAMPROW rows = row.data();
        jpeg_write_scanlines(&jpeg, &rows, 1);
    }
}

// By libjpeg's default, an error prints a message and ends the program.
void writeJpeg(const std::string& path, cairo_surface_t* surface) {
    File file(std::fopen(path.c_str(), "wb"), std::fclose);
    if (!file) throw std::runtime_error(path + " cannot be written");
    jpeg_error_mgr errors{};
    jpeg_compress_struct jpeg{};
    jpeg.err = jpeg_std_error(&errors);
    jpeg_create_compress(&jpeg);
    jpeg_stdio_dest(&jpeg, file.get());
    jpeg.image_width = kSide;
    jpeg.image_height = kSide;
    jpeg.input_components = 3;
    jpeg.in_color_space = JCS_RGB;
    jpeg_set_defaults(&jpeg);
    jpeg_set_quality(&jpeg, 82, TRUE);
    jpeg_start_compress(&jpeg, TRUE);
    writeRows(jpeg, surface);
    jpeg_finish_compress(&jpeg);
    jpeg_destroy_compress(&jpeg);
    if (std::fclose(file.release()) != 0) throw std::runtime_error(path + " cannot be written");
}

}  // namespace

void drawPhoto(const std::string& path) {
    const Surface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, kSide, kSide));
    const Context context(cairo_create(surface.get()));
    scene(context.get());
    require(cairo_status(context.get()));
    cairo_surface_flush(surface.get());
    writeJpeg(path, surface.get());
}

}  // namespace tavio::examples
