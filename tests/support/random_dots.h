// Dots for tests, drawn and random.
#pragma once

#include <cstdint>
#include <functional>

#include "TavioIpadSDK/sharp/dots.h"
#include "support/bitmaps.h"
#include "support/random_picture.h"

namespace tavio::test {

// A picture that is black where `isBlack` says so.
sharp::Dots dotsWhere(std::int32_t width, std::int32_t height,
                      const std::function<bool(std::int32_t column, std::int32_t row)>& isBlack);

// "X" is black.
sharp::Dots dotsOf(const Rows& rows);
Rows rowsOf(const sharp::Dots& dots);

// Noise of any density, single dots, boxes and lines, words of text lines; never padding bits.
sharp::Dots randomDots(Random& random, std::int32_t width, std::int32_t height);

// A page of text: lines of words of glyph-like strokes, whose letters have `letterRows` rows from the
// top of a capital to the bottom of a descender.
sharp::Dots textPage(Random& random, std::int32_t width, std::int32_t height,
                     std::int32_t letterRows);

}  // namespace tavio::test
