#include "tavio/printing/calibration_sheet.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>

#include "TavioIpadSDK/platform/picture.h"
#include "tavio/virtual-printer/font.h"

namespace tavio::printing {
namespace {

using platform::Picture;
using virtual_printer::Glyph;
using virtual_printer::kGlyphAdvance;
using virtual_printer::kGlyphColumns;
using virtual_printer::kGlyphRows;

constexpr UInt32 kWhite = platform::premultipliedPixel(255, 255, 255, 255);
constexpr UInt32 kBlack = platform::premultipliedPixel(0, 0, 0, 255);

Picture pictureOf(Size size, UInt32 pixel) {
    Picture picture;
    picture.width = size.width;
    picture.height = size.height;
    picture.pixels.assign(
        static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height), pixel);
    return picture;
}

void draw(const Glyph& glyph, std::int32_t left, std::int32_t dot, Picture& picture) {
    const auto width = static_cast<std::size_t>(picture.width);
    for (std::int32_t y = 0; y < kGlyphRows * dot; ++y) {
        for (std::int32_t x = 0; x < kGlyphColumns * dot; ++x) {
            const int bit = kGlyphColumns - 1 - x / dot;
            if ((glyph[static_cast<std::size_t>(y / dot)] >> bit & 1) == 0) continue;
            const auto column = static_cast<std::size_t>(left + x);
            picture.pixels[static_cast<std::size_t>(y) * width + column] = kBlack;
        }
    }
}

DrawOptions dotForPixel(Turn turn) {
    DrawOptions options;
    options.fit = Fit::kActual;
    options.turn = turn;
    return options;
}

}  // namespace

CalibrationSheet::CalibrationSheet(const TicketSettings& settings)
    : ticket_(settings),
      unit_(settings.resolution / 100),
      thin_(std::max(1, settings.resolution / 300)),
      letterDot_(std::min(unit_, 4)) {}

Size CalibrationSheet::textSize(std::string_view text) const {
    const auto letters = static_cast<std::int32_t>(text.size());
    const std::int32_t gap = kGlyphAdvance - kGlyphColumns;
    return {(letters * kGlyphAdvance - gap) * letterDot_, kGlyphRows * letterDot_};
}

void CalibrationSheet::lineAcross(std::int32_t left, std::int32_t top, std::int32_t length,
                                  std::int32_t thickness) {
    ticket_.line(placeOf(left, top), length, {.thickness = thickness});
}

void CalibrationSheet::lineDown(std::int32_t left, std::int32_t top, std::int32_t length,
                                std::int32_t thickness, std::int32_t dash) {
    ticket_.line(placeOf(left, top), length,
                 {.direction = LineDirection::kDown, .thickness = thickness, .dash = dash});
}

void CalibrationSheet::grey(const SheetArea& area, Byte value, std::int32_t dotGain) {
    const Size size{area.right - area.left, area.bottom - area.top};
    DrawOptions options = dotForPixel(Turn::k0);
    options.tone.dotGain = dotGain;
    ticket_.picture(std::make_shared<const Picture>(
                        pictureOf(size, platform::premultipliedPixel(value, value, value, 255))),
                    placeOf(area.left, area.top), options);
}

void CalibrationSheet::text(std::string_view text, std::int32_t left, std::int32_t top, Turn turn) {
    Picture picture = pictureOf(textSize(text), kWhite);
    std::int32_t at = 0;
    for (const char letter : text) {
        draw(virtual_printer::glyphOf(static_cast<char32_t>(letter)), at, letterDot_, picture);
        at += kGlyphAdvance * letterDot_;
    }
    ticket_.picture(std::make_shared<const Picture>(std::move(picture)), placeOf(left, top),
                    dotForPixel(turn));
}

void CalibrationSheet::textAt(std::string_view text, std::int32_t middle, std::int32_t top) {
    this->text(text, middle - textSize(text).width / 2, top);
}

void CalibrationSheet::code(CodeKind kind, const std::string& data, std::int32_t left,
                            std::int32_t top, const CodeOptions& options) {
    ticket_.code(kind, data, placeOf(left, top), options);
}

Place CalibrationSheet::placeOf(std::int32_t left, std::int32_t top) const {
    const bool isLandscape = ticket_.settings().orientation == Orientation::kLandscape;
    return isLandscape ? Place{top, left} : Place{left, top};
}

}  // namespace tavio::printing
