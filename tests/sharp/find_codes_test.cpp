// Codes are found at modules from 1.5 dots up, anywhere and turned; pictures without codes have none.
#include "TavioIpadSDK/sharp/find_codes.h"

#include <cmath>

#include <gtest/gtest.h>

#include "TavioIpadSDK/sharp/halftone.h"
#include "sharp/sample_codes.h"
#include "support/memory_rows.h"
#include "support/random_picture.h"

namespace tavio::sharp {
namespace {

using test::between;
using test::chance;
using test::Random;
using test::TextPicture;

Dots whitePaper(std::int32_t width, std::int32_t height) {
    Dots dots{.width = width, .height = height, .bits = {}};
    dots.bits.resize(dots.rowBytes() * static_cast<std::size_t>(height), 0);
    return dots;
}

void blacken(Dots& dots, std::int32_t column, std::int32_t row) {
    const auto at = static_cast<std::size_t>(column);
    Byte& byte = dots.row(row)[at / 8];
    byte = static_cast<Byte>(byte | 0x80U >> at % 8);
}

void fill(Dots& dots, std::int32_t left, std::int32_t top, std::int32_t right,
          std::int32_t bottom) {
    for (std::int32_t row = top; row < bottom; ++row) {
        for (std::int32_t column = left; column < right; ++column) blacken(dots, column, row);
    }
}

TextPicture turned(const TextPicture& picture) {
    TextPicture by90(picture.front().size(), std::string(picture.size(), '.'));
    for (std::size_t row = 0; row < picture.size(); ++row) {
        for (std::size_t column = 0; column < picture.front().size(); ++column)
            by90[column][picture.size() - 1 - row] = picture[row][column];
    }
    return by90;
}

// Each edge of a module is rounded to a dot.
void draw(Dots& dots, const TextPicture& picture, double left, double top, double module) {
    const auto edge = [&](double start, std::size_t index) {
        return static_cast<std::int32_t>(std::lround(start + module * static_cast<double>(index)));
    };
    for (std::size_t row = 0; row < picture.size(); ++row) {
        for (std::size_t column = 0; column < picture.front().size(); ++column) {
            if (picture[row][column] != '#') continue;
            fill(dots, edge(left, column), edge(top, row), edge(left, column + 1),
                 edge(top, row + 1));
        }
    }
}

// On white paper, turned by some quarters, at a random place between two dots.
Dots paperWith(TextPicture picture, double module, Random& random) {
    for (int quarters = between(random, 0, 3); quarters > 0; --quarters) picture = turned(picture);
    const auto size = [&](std::size_t modules) {
        return static_cast<std::int32_t>(std::ceil(module * static_cast<double>(modules + 40)));
    };
    Dots dots = whitePaper(size(picture.front().size()), size(picture.size()));
    const double left = module * between(random, 110, 290) / 10;
    const double top = module * between(random, 110, 290) / 10;
    draw(dots, picture, left, top, module);
    return dots;
}

void expectFound(const TextPicture& picture, double tolerance) {
    for (unsigned seed = 0; seed < 40; ++seed) {
        Random random(seed);
        const double module = between(random, 150, seed % 2 == 0 ? 400 : 800) / 100.0;
        SCOPED_TRACE(testing::Message() << "seed " << seed << ", module " << module);
        const std::optional<double> found = narrowestModule(paperWith(picture, module, random));
        ASSERT_TRUE(found);
        EXPECT_NEAR(*found, module, tolerance * module);
    }
}

TEST(FindCodes, FindsQrCodes) {
    expectFound(test::kSmallQr, 0.04);
    expectFound(test::kLargeQr, 0.04);
}

TEST(FindCodes, FindsDataMatrix) {
    expectFound(test::kSmallDataMatrix, 0.08);
    expectFound(test::kOblongDataMatrix, 0.08);
    expectFound(test::kLargeDataMatrix, 0.04);
}

TEST(FindCodes, FindsCode128) {
    expectFound(TextPicture(20, test::code128("Row F, seat 12")), 0.04);
}

TEST(FindCodes, TellsTheNarrowest) {
    Dots dots = whitePaper(800, 800);
    draw(dots, test::kSmallQr, 50, 50, 6);
    draw(dots, test::kSmallDataMatrix, 50, 300, 2.5);
    draw(dots, TextPicture(20, test::code128("A12")), 300, 300, 4);
    const std::optional<double> found = narrowestModule(dots);
    ASSERT_TRUE(found);
    EXPECT_NEAR(*found, 2.5, 0.1);
}

TEST(FindCodes, FindsNoneOnBlankOrBlackPaper) {
    EXPECT_FALSE(narrowestModule(Dots{}));
    Dots dots = whitePaper(300, 200);
    EXPECT_FALSE(narrowestModule(dots));
    fill(dots, 0, 0, 300, 200);
    EXPECT_FALSE(narrowestModule(dots));
}

TEST(FindCodes, FindsNoneInNoise) {
    for (unsigned seed = 0; seed < 20; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        Random random(seed);
        Dots dots = whitePaper(600, 600);
        const int percent = between(random, 2, 98);
        const int size = between(random, 1, 4);
        for (int row = 0; row < 600 / size; ++row) {
            for (int column = 0; column < 600 / size; ++column) {
                if (!chance(random, percent)) continue;
                fill(dots, column * size, row * size, column * size + size, row * size + size);
            }
        }
        EXPECT_FALSE(narrowestModule(dots));
    }
}

TEST(FindCodes, FindsNoneInHalftones) {
    std::vector<Byte> greys;
    for (int row = 0; row < 512; ++row) {
        for (int column = 0; column < 512; ++column)
            greys.push_back(
                static_cast<Byte>(127 + 128 * std::sin(column / 90.0) * std::cos(row / 70.0)));
    }
    for (const Method method : {Method::kDithered, Method::kThreshold}) {
        test::MemoryRows rows(512, 512, greys);
        EXPECT_FALSE(narrowestModule(halftoned(rows, {.method = method}, false)));
    }
}

TEST(FindCodes, FindsNoneInTablesAndPatterns) {
    for (const std::int32_t cell : {2, 3, 8, 20, 45}) {
        SCOPED_TRACE(cell);
        Dots table = whitePaper(1000, 1000);
        Dots board = whitePaper(1000, 1000);
        Dots stripes = whitePaper(1000, 1000);
        for (std::int32_t line = 100; line < 900; line += cell) {
            fill(table, line, 100, line + 1, 900);
            fill(table, 100, line, 900, line + 1);
            if ((line - 100) / cell % 2 == 0) fill(stripes, line, 100, line + cell, 900);
            for (std::int32_t column = 100; column < 900; column += cell) {
                if ((line + column - 200) / cell % 2 != 0) continue;
                fill(board, column, line, column + cell, line + cell);
            }
        }
        EXPECT_FALSE(narrowestModule(table));
        EXPECT_FALSE(narrowestModule(board));
        EXPECT_FALSE(narrowestModule(stripes));
    }
}

// Stems of one width and of one height, joined at the top or below, are what bars look most like.
TEST(FindCodes, FindsNoneInLinesOfLetters) {
    for (unsigned seed = 0; seed < 20; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        Random random(seed);
        Dots page = whitePaper(1200, 400);
        const int stem = between(random, 1, 7);
        for (int top = 20; top < 360 - 9 * stem; top += 12 * stem) {
            for (int left = 20; left < 1100;) {
                fill(page, left, top, left + stem, top + 8 * stem);
                const int right = left + between(random, 2, 4) * stem;
                if (chance(random, 70)) fill(page, left, top, right, top + stem);
                left = right + (chance(random, 20) ? 5 * stem : 0);
            }
        }
        EXPECT_FALSE(narrowestModule(page));
    }
}

}  // namespace
}  // namespace tavio::sharp
