// The protocol between the library and the program tavio-pdf-page.
//
//   command  = tavio-pdf-page CPU MEMORY SIDE PAGE [RESOLUTION FIT TURN WIDTH HEIGHT]
//              CPU MEMORY as of every helper program (helper/ask_program.h)
//              SIDE    the longest side of the crop box allowed, in points, a decimal number
//              PAGE    the number of the page, a whole number; the first page is 1
//              the others, whole numbers, ask for a page in dots (sharp/draw_page.h):
//              RESOLUTION     dots per inch, 1 or more
//              FIT TURN       values of sharp::Fit and sharp::Turn
//              WIDTH HEIGHT   the box in dots, 1 or more
//   input    = the document
//   answer   = header pixels; nothing follows
//   header   = the 72 bytes of AnswerHeader, numbers in the machine's own form
//   pixels   = columns * rows words of 32 bits as in Picture (red, green, blue, 255), the top row
//              first; of a page in dots, as many bytes as in sharp::GreyRows; only if the outcome is
//              kDrawn
//
// The header of a page in dots is sent before its rows are drawn.
#pragma once

#include <cmath>
#include <cstdint>
#include <type_traits>

#include "TavioIpadSDK/machine/arithmetic.h"

namespace tavio::pdf {

inline constexpr std::uint32_t kAnswerMagic = 0x47505654;  // reads TVPG in memory
inline constexpr std::uint32_t kAnswerVersion = 3;

// Values of AnswerHeader::outcome.
enum class Answer : std::uint32_t {
    kDrawn = 0,
    kNotPdf = 1,
    kEncrypted = 2,
    kNoPage = 3,  // the document has no page of that number
    kTooLarge = 4,
    kOutOfMemory = 5,
};

// All fields after `pages` are 0 unless the outcome is kDrawn.
struct AnswerHeader {
    std::uint32_t magic = kAnswerMagic;
    std::uint32_t version = kAnswerVersion;
    Answer outcome = Answer::kNotPdf;
    std::int32_t pages = 0;  // how many the document has; 0 if it is not known
    double x = 0;            // the crop box in points; of a page in dots, as it is shown at 0, 0
    double y = 0;
    double width = 0;
    double height = 0;
    std::int32_t left = 0;  // the pixels' place on the canvas, or in the page of dots
    std::int32_t top = 0;
    std::uint32_t columns = 0;
    std::uint32_t rows = 0;
    double smallestText = 0;  // in points, of a page in dots as printed; 0 if there is no text
};
static_assert(sizeof(AnswerHeader) == 72 && std::is_trivially_copyable_v<AnswerHeader>);

// The canvas pixels that a crop box touches. All four are whole numbers; they stay double because
// a crop box may lie anywhere. The box covers columns x to x + width and rows -y to height - y.
struct PixelBox {
    double left = 0;
    double top = 0;
    double columns = 0;
    double rows = 0;
};

inline PixelBox pixelBox(double x, double y, double width, double height) {
    const double left = std::floor(x);
    const double top = std::floor(-y);
    return {left, top, std::ceil(x + width) - left, std::ceil(height - y) - top};
}

// True if both sides are more than 0 and at most `maxPoints`. False for NaN.
inline bool sidesAllowed(double width, double height, double maxPoints) {
    return width > 0 && height > 0 && width <= maxPoints && height <= maxPoints;
}

inline bool hasGoodText(const AnswerHeader& header) {
    return std::isfinite(header.smallestText) && header.smallestText >= 0;
}

// The header of a drawn page, without `pages`. The sides of the box must be allowed and its pixels
// must fit 32 bits.
inline AnswerHeader drawnHeader(double x, double y, double width, double height) {
    const PixelBox box = pixelBox(x, y, width, height);
    AnswerHeader header;
    header.outcome = Answer::kDrawn;
    header.x = x;
    header.y = y;
    header.width = width;
    header.height = height;
    header.left = machine::truncateToInt32(box.left);
    header.top = machine::truncateToInt32(box.top);
    header.columns = static_cast<std::uint32_t>(box.columns);
    header.rows = static_cast<std::uint32_t>(box.rows);
    return header;
}

}  // namespace tavio::pdf
