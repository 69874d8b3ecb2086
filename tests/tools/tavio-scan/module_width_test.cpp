// Measuring modules.

#include "tools/tavio-scan/module_width.h"

#include <cmath>
#include <cstddef>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tools/tavio-scan/text_bitmap.h"

namespace tavio::scan {
namespace {

// Bars and gaps in turn, in modules of `width` dots, whose edges lie on the nearest dots.
std::string barsOf(const std::vector<int>& modules, double width) {
    std::string row;
    double end = 0;
    char dot = '#';
    for (const int count : modules) {
        end += count * width;
        row.resize(static_cast<std::size_t>(std::lround(end)), dot);
        dot = dot == '#' ? '.' : '#';
    }
    return row;
}

std::vector<int> randomBars(unsigned seed, int widest) {
    std::mt19937 random(seed);
    std::vector<int> bars(61);
    for (int& bar : bars) bar = std::uniform_int_distribution<>(1, widest)(random);
    return bars;
}

double widthOf(const std::string& row) {
    const Bitmap bitmap = bitmapOf({row, row, row});
    return moduleWidth(bitmap, {0, 0, bitmap.width, bitmap.height}, Along::kRows, false);
}

TEST(ModuleWidth, IsThatOfTheBarsInWholeDots) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE(seed);
        for (const int dots : {2, 3, 5, 8})
            EXPECT_EQ(widthOf(barsOf(randomBars(seed, 4), dots)), dots);
    }
}

TEST(ModuleWidth, IsTheMeanWhereEdgesAreRounded) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE(seed);
        for (const double dots : {2.5, 2.75, 3.3, 4.2, 5.9})
            EXPECT_NEAR(widthOf(barsOf(randomBars(seed, 4), dots)), dots, 0.03);
    }
}

TEST(ModuleWidth, IsMeasuredAlongTheCode) {
    const std::string row = barsOf(randomBars(1, 4), 3);
    std::vector<std::string> turned;
    for (const char dot : row) turned.emplace_back(10, dot);
    const Bitmap bitmap = bitmapOf(turned);
    const Part all{0, 0, bitmap.width, bitmap.height};
    EXPECT_EQ(moduleWidth(bitmap, all, Along::kColumns, false), 3);
    EXPECT_EQ(moduleWidth(bitmap, all, Along::kRows, false), 0) << "each of its rows is one run";
}

// Wide bars are 2.5 times as wide as narrow ones.
TEST(ModuleWidth, OfWideAndNarrowBarsIsThatOfTheNarrowOnes) {
    std::string row;
    for (int pair = 0; pair < 20; ++pair)
        row += pair % 3 == 0 ? "##########...." : "####..........";
    const Bitmap bitmap = bitmapOf({row});
    EXPECT_EQ(moduleWidth(bitmap, {0, 0, bitmap.width, 1}, Along::kRows, true), 4);
}

TEST(ModuleWidth, IsOfThePartAlone) {
    const std::string row = barsOf(randomBars(1, 4), 3);
    const std::string other(row.size(), '#');
    std::string fine;
    while (fine.size() < row.size()) fine += "#.";
    fine.resize(row.size());
    const Bitmap bitmap = bitmapOf({fine, row, row, fine, other});
    EXPECT_EQ(moduleWidth(bitmap, {0, 1, bitmap.width, 2}, Along::kRows, false), 3);
}

TEST(ModuleWidth, OfNothingIsZero) {
    const Bitmap white = bitmapOf({"....", "...."});
    EXPECT_EQ(moduleWidth(white, {0, 0, 4, 2}, Along::kRows, false), 0);
    EXPECT_EQ(moduleWidth(white, {1, 1, 0, 0}, Along::kRows, false), 0);
}

}  // namespace
}  // namespace tavio::scan
