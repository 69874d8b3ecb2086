#include "support/random_dots.h"

#include <algorithm>
#include <string>

namespace tavio::test {
namespace {

using sharp::Dots;

Dots blankDots(std::int32_t width, std::int32_t height) {
    Dots dots;
    dots.width = width;
    dots.height = height;
    dots.bits.assign(dots.rowBytes() * static_cast<std::size_t>(height), 0);
    return dots;
}

// Outside the picture it does nothing.
void blacken(Dots& dots, std::int32_t column, std::int32_t row) {
    if (column < 0 || row < 0 || column >= dots.width || row >= dots.height) return;
    const auto at = static_cast<std::size_t>(column);
    Byte& byte = dots.row(row)[at / 8];
    byte = static_cast<Byte>(byte | 0x80 >> (at % 8));
}

void fillBox(Dots& dots, std::int32_t left, std::int32_t top, std::int32_t width,
             std::int32_t height) {
    for (std::int32_t y = top; y < top + height; ++y)
        for (std::int32_t x = left; x < left + width; ++x) blacken(dots, x, y);
}

void addNoise(Random& random, Dots& dots) {
    const int perThousand = chance(random, 50) ? between(random, 1, 60) : between(random, 1, 1000);
    for (std::int32_t y = 0; y < dots.height; ++y)
        for (std::int32_t x = 0; x < dots.width; ++x)
            if (between(random, 1, 1000) <= perThousand) blacken(dots, x, y);
}

void addBoxes(Random& random, Dots& dots) {
    for (int count = between(random, 1, 12); count > 0; --count) {
        const bool isLine = chance(random, 40);
        const std::int32_t width = between(random, 1, isLine ? 2 : 25);
        const std::int32_t height = between(random, 1, isLine ? 40 : 20);
        const bool isTurned = chance(random, 50);
        fillBox(dots, between(random, -5, dots.width), between(random, -5, dots.height),
                isTurned ? height : width, isTurned ? width : height);
    }
}

// Strokes up, down and across in a box of `width` columns.
void addGlyph(Random& random, Dots& dots, std::int32_t left, std::int32_t top, std::int32_t width,
              std::int32_t height) {
    const std::int32_t stroke = std::max(1, height / 8);
    for (int strokes = between(random, 2, 4); strokes > 0; --strokes) {
        if (chance(random, 50)) {
            const std::int32_t up = left + between(random, 0, std::max(0, width - stroke));
            fillBox(dots, up, top, stroke, height);
        } else {
            const std::int32_t across = top + between(random, 0, std::max(0, height - stroke));
            fillBox(dots, left, across, width, stroke);
        }
    }
}

// Of five parts of a letter's height the lowest is a descender's, the highest an ascender's.
void addTextLine(Random& random, Dots& dots, std::int32_t left, std::int32_t right,
                 std::int32_t top, std::int32_t letterRows) {
    const std::int32_t part = std::max(1, letterRows / 5);
    std::int32_t x = left;
    while (x < right) {
        for (int letters = between(random, 1, 9); letters > 0 && x < right; --letters) {
            const std::int32_t width = std::max(1, part * between(random, 1, 4));
            const bool isTall = chance(random, 30);
            const bool isDeep = chance(random, 15);
            const std::int32_t above = isTall ? 0 : part;
            const std::int32_t bottom = letterRows - (isDeep ? 0 : part);
            addGlyph(random, dots, x, top + above, width, bottom - above);
            x += width + std::max(1, part / 2);
        }
        x += 2 * part;
    }
}

}  // namespace

Dots dotsWhere(std::int32_t width, std::int32_t height,
               const std::function<bool(std::int32_t, std::int32_t)>& isBlack) {
    Dots dots = blankDots(width, height);
    for (std::int32_t y = 0; y < height; ++y)
        for (std::int32_t x = 0; x < width; ++x)
            if (isBlack(x, y)) blacken(dots, x, y);
    return dots;
}

Dots dotsOf(const Rows& rows) {
    const auto width = rows.empty() ? 0 : static_cast<std::int32_t>(rows[0].size());
    return dotsWhere(width, static_cast<std::int32_t>(rows.size()), [&](auto x, auto y) {
        return rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] == 'X';
    });
}

Rows rowsOf(const Dots& dots) {
    Rows rows;
    for (std::int32_t y = 0; y < dots.height; ++y) {
        rows.emplace_back();
        for (std::int32_t x = 0; x < dots.width; ++x) rows.back() += dots.isBlack(x, y) ? 'X' : ' ';
    }
    return rows;
}

Dots textPage(Random& random, std::int32_t width, std::int32_t height, std::int32_t letterRows) {
    Dots dots = blankDots(width, height);
    const std::int32_t margin = std::min(width, height) / 12;
    std::int32_t top = margin;
    while (top + letterRows <= height - margin) {
        const bool isShort = chance(random, 20);
        const std::int32_t right = isShort ? width / 3 : width - margin;
        addTextLine(random, dots, margin, right, top, letterRows);
        top += letterRows + std::max(1, letterRows / 5);
        if (isShort) top += letterRows;
    }
    return dots;
}

Dots randomDots(Random& random, std::int32_t width, std::int32_t height) {
    if (chance(random, 15)) return textPage(random, width, height, between(random, 5, 20));
    Dots dots = blankDots(width, height);
    if (chance(random, 60)) addNoise(random, dots);
    if (chance(random, 50)) addBoxes(random, dots);
    return dots;
}

}  // namespace tavio::test
