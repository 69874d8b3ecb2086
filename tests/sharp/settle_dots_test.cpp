// Which dots are black, white and grey.
#include "TavioIpadSDK/sharp/settle_dots.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "support/instruction_sets.h"

namespace tavio::test {
namespace {

// Pictures as text: '#' is black, '.' white, and a digit that many tenths of white.
using Rows = std::vector<std::string>;

Byte valueOf(char character) {
    if (character == '#') return 0;
    return static_cast<Byte>(character == '.' ? 255 : 26 * (character - '0'));
}

char characterOf(Byte value) {
    if (value == 0) return '#';
    if (value == 255) return '.';
    return value % 26 == 0 ? static_cast<char>('0' + value / 26) : '?';
}

std::vector<std::uint32_t> pixelsOf(const Rows& drawing) {
    std::vector<std::uint32_t> pixels;
    for (const std::string& row : drawing) {
        for (const char character : row) pixels.push_back(valueOf(character) * 0x010101U);
    }
    return pixels;
}

// The dots of a drawing of `width` dots.
Bytes settled(const std::vector<std::uint32_t>& pixels, std::int32_t width, int factor) {
    sharp::DotSettler settler(width, factor);
    const std::size_t stride = static_cast<std::size_t>(width) * static_cast<std::size_t>(factor);
    const std::size_t step = stride * static_cast<std::size_t>(factor);
    Bytes dots;
    const auto append = [&](std::span<const Byte> row) {
        dots.insert(dots.end(), row.begin(), row.end());
    };
    for (std::size_t at = 0; at < pixels.size(); at += step) {
        append(settler.add(pixels.data() + at, stride));
    }
    append(settler.finish());
    return dots;
}

Rows dotsOf(const Rows& drawing, int factor) {
    const std::size_t width = drawing[0].size() / static_cast<std::size_t>(factor);
    const Bytes dots = settled(pixelsOf(drawing), static_cast<std::int32_t>(width), factor);
    Rows rows;
    for (std::size_t at = 0; at < dots.size(); at += width) {
        std::string row;
        for (std::size_t x = at; x < at + width; ++x) row += characterOf(dots[x]);
        rows.push_back(row);
    }
    return rows;
}

TEST(SettleDots, AreBlackIfHalfOrMoreOfThemIsCovered) {
    EXPECT_EQ(dotsOf({"#.......", "##......"}, 2), (Rows{"#..."}));
    EXPECT_EQ(dotsOf({"........", "........", "#...#...", "#.......", "........", "........"}, 2),
              (Rows{"....", "#...", "...."}));
    EXPECT_EQ(dotsOf({"###...", "##....", "......"}, 3), (Rows{"#."}));
    EXPECT_EQ(dotsOf({"###...", "#.....", "......"}, 3), (Rows{".."}));
}

TEST(SettleDots, SmoothEdgesCountByTheirCoverage) {
    EXPECT_EQ(dotsOf({"##4..", "##6.."}, 1), (Rows{"###..", "##..."}));
    EXPECT_EQ(dotsOf({"##4.....", "##4.....", "##3.....", "##4....."}, 4), (Rows{"#."}));
    EXPECT_EQ(dotsOf({"#.4.....", "#.4.....", "#.9.....", "#.9....."}, 4), (Rows{".."}));
}

TEST(SettleDots, GreysKeepTheirValue) {
    EXPECT_EQ(dotsOf({"444444", "444444", "444444"}, 3), (Rows{"44"}));
    EXPECT_EQ(dotsOf({"2255", "2255"}, 1), (Rows{"2255", "2255"}));
}

TEST(SettleDots, TheSmoothEdgeOfAGreyIsTheGreyOrThePaper) {
    EXPECT_EQ(dotsOf({"446...", "448...", "444..."}, 1), (Rows{"444...", "44....", "444..."}));
    EXPECT_EQ(dotsOf({"44447...", "44447...", "44447...", "44447..."}, 4), (Rows{"4."}));
    EXPECT_EQ(dotsOf({"446.....", "446.....", "446.....", "446....."}, 4), (Rows{"4."}));
    EXPECT_EQ(dotsOf({"4.......", "4.......", "4.......", "4......."}, 4), (Rows{".."}));
}

TEST(SettleDots, TheSmoothEdgeOfBlackOnGreyIsBlackOrTheGrey) {
    EXPECT_EQ(dotsOf({"##2666", "##5666"}, 1), (Rows{"###666", "##6666"}));
    EXPECT_EQ(dotsOf({"#3666666", "#3666666", "#3666666", "#3666666"}, 4), (Rows{"66"}));
    EXPECT_EQ(dotsOf({"##366666", "##366666", "##366666", "##366666"}, 4), (Rows{"#6"}));
}

// The same row of pixels in each row of `rows` dots.
Rows repeated(const std::string& row, int rows, int factor) {
    return Rows(static_cast<std::size_t>(rows * factor), row);
}

TEST(SettleDots, AStrokeThinnerThanADotIsOneDotWide) {
    const Rows one{".#.", ".#."};
    EXPECT_EQ(dotsOf(repeated("....#.......", 2, 4), 4), one);
    Rows tooThin = repeated("....#.......", 2, 4);
    for (std::size_t i = 0; i < tooThin.size(); i += 2) tooThin[i] = "............";
    EXPECT_EQ(dotsOf(tooThin, 4), (Rows{"...", "..."}));
    EXPECT_EQ(dotsOf(repeated(".......##.......", 2, 4), 4), (Rows{".#..", ".#.."}))
        << "between two dots: one of them";
}

TEST(SettleDots, TheEdgeOfAnAreaIsNoStroke) {
    Rows drawing = repeated("................", 1, 4);
    for (int i = 0; i < 4; ++i) drawing.emplace_back("....#####.......");
    for (int i = 0; i < 4; ++i) drawing.emplace_back("................");
    EXPECT_EQ(dotsOf(drawing, 4), (Rows{"....", ".#..", "...."}));
}

TEST(SettleDots, AGreyWithABlackOutlineKeepsItsValueBesideIt) {
    EXPECT_EQ(dotsOf({"....####5555", "....####5555", "....####5555", "....####5555"}, 4),
              (Rows{".#5"}));
}

TEST(SettleDots, AreBlackInBlackInkAndWhiteInWhatTheEyeDoesNotSee) {
    const std::vector<std::pair<std::uint32_t, Byte>> dots = {
        {0x231F20, 0},   {0x030303, 0},  {0x040404, 4},   {0xFBFBFB, 251}, {0xFCFCFC, 255},
        {0xFF000000, 0}, {0xFF0000, 76}, {0x00FF00, 150}, {0x0000FF, 29},
    };
    for (const auto& [pixel, value] : dots) EXPECT_EQ(settled({pixel}, 1, 1), Bytes{value});
}

TEST(SettleDots, ADrawingWithoutRowsHasNoDots) {
    sharp::DotSettler settler(5, 2);
    EXPECT_TRUE(settler.finish().empty());
}

// The rules of settle_dots.h, pixel by pixel.
class Twin {
  public:
    Twin(const std::vector<std::uint32_t>& pixels, int width, int factor)
        : pixels_(pixels),
          width_(width),
          factor_(factor),
          height_(static_cast<int>(pixels.size()) / (width * factor * factor)) {}

    Bytes dots() const {
        Bytes dots;
        for (int y = 0; y < height_; ++y) {
            for (int x = 0; x < width_; ++x) dots.push_back(dot(x, y));
        }
        return dots;
    }

  private:
    // The values of the pixels of the dots from one column and row to another.
    std::vector<int> values(int left, int top, int right, int bottom) const {
        std::vector<int> values;
        for (int y = std::max(top, 0) * factor_; y < std::min(bottom, height_) * factor_; ++y) {
            for (int x = std::max(left, 0) * factor_; x < std::min(right, width_) * factor_; ++x) {
                const int value =
                    luminanceOf(pixels_[static_cast<std::size_t>(y * width_ * factor_ + x)]);
                const int lighter = value >= 252 ? 255 : value;
                values.push_back(value <= 3 ? 0 : lighter);
            }
        }
        return values;
    }

    static int luminanceOf(std::uint32_t pixel) {
        if ((pixel & 0xFFFFFF) == 0x231F20) return 0;
        const auto red = static_cast<int>(pixel >> 16 & 255);
        const auto green = static_cast<int>(pixel >> 8 & 255);
        const auto blue = static_cast<int>(pixel & 255);
        return (299 * red + 587 * green + 114 * blue + 500) / 1000;
    }

    Byte dot(int x, int y) const {
        const std::vector<int> own = values(x, y, x + 1, y + 1);
        const std::vector<int> near = values(x - 1, y - 1, x + 2, y + 2);
        const auto isBetween = [](int value) { return value != 0 && value != 255; };
        const int all = factor_ * factor_;
        int sum = 0;
        for (const int value : own) sum += value;
        const bool hasBlack = std::ranges::count(near, 0) > 0;
        const bool hasWhite = std::ranges::count(near, 255) > 0;
        const auto between = std::ranges::count_if(own, isBetween);
        if (between == 0 || (hasBlack && hasWhite && (factor_ < 3 || between < all))) {
            return 2 * sum <= 255 * all || isThinStroke(x, y, 255 * all) ? 0 : 255;
        }
        if (hasBlack == hasWhite) return static_cast<Byte>((sum + all / 2) / all);

        std::vector<int> greys = factor_ < 3 ? near : own;
        std::erase_if(greys, [&](int value) { return !isBetween(value); });
        const int solid = hasWhite ? 255 : 0;
        const int grey = hasWhite ? std::ranges::min(greys) : std::ranges::max(greys);
        const int full = std::abs(grey - solid) * all;
        const bool isGrey =
            2 * std::abs(sum - solid * all) >= full || (hasWhite && isThinStroke(x, y, full));
        return static_cast<Byte>(isGrey ? grey : solid);
    }

    // Of a dot; outside of the drawing, of the nearest one inside.
    int ink(int x, int y) const {
        const int column = std::clamp(x, 0, width_ - 1);
        const int row = std::clamp(y, 0, height_ - 1);
        int ink = 0;
        for (const int value : values(column, row, column + 1, row + 1)) ink += 255 - value;
        return ink;
    }

    bool isThinStroke(int x, int y, int full) const {
        if (4 * ink(x, y) < full) return false;
        const auto goesOn = [&](std::vector<int> before, std::vector<int> after) {
            const int one = std::ranges::max(before);
            const int other = std::ranges::max(after);
            const int most = std::max(one, other);
            return 4 * std::min(one, other) >= full || (4 * most >= full && 2 * most < full);
        };
        const bool isLevel = ink(x, y - 1) < ink(x, y) && ink(x, y + 1) <= ink(x, y) &&
                             goesOn({ink(x - 1, y - 1), ink(x - 1, y), ink(x - 1, y + 1)},
                                    {ink(x + 1, y - 1), ink(x + 1, y), ink(x + 1, y + 1)});
        const bool isUpright = ink(x - 1, y) < ink(x, y) && ink(x + 1, y) <= ink(x, y) &&
                               goesOn({ink(x - 1, y - 1), ink(x, y - 1), ink(x + 1, y - 1)},
                                      {ink(x - 1, y + 1), ink(x, y + 1), ink(x + 1, y + 1)});
        return isLevel || isUpright;
    }

    const std::vector<std::uint32_t>& pixels_;
    int width_;
    int factor_;
    int height_;
};

// Patches of few colours, so that all of the rules apply.
std::vector<std::uint32_t> randomPixels(int columns, int rows, std::mt19937& random) {
    const auto grey = [&] { return static_cast<std::uint32_t>(random() % 256) * 0x010101; };
    const auto colour = [&] { return static_cast<std::uint32_t>(random()); };
    const std::vector<std::uint32_t> colours = {0,        0xFFFFFF, 0xFFFFFF, 0xFF020202, 0xFDFDFD,
                                                0x231F20, grey(),   grey(),   colour()};
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(columns * rows), 0xFFFFFF);
    const auto upTo = [&](int end) {
        return static_cast<int>(random() % static_cast<unsigned>(end));
    };
    for (int patches = upTo(20); patches > 0; --patches) {
        const std::uint32_t patch = colours[random() % colours.size()];
        const int left = upTo(columns);
        const int top = upTo(rows);
        const int right = std::min(columns, left + 1 + upTo(columns));
        const int bottom = std::min(rows, top + 1 + upTo(rows));
        for (int y = top; y < bottom; ++y) {
            for (int x = left; x < right; ++x) {
                pixels[static_cast<std::size_t>(y * columns + x)] = patch;
            }
        }
    }
    return pixels;
}

TEST(SettleDots, AreThoseOfTheRulesPixelByPixelWithEveryInstructionSet) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    for (int i = 0; i < 300; ++i) {
        const int factor = 1 + i % 4;
        const int width = 1 + static_cast<int>(random() % 140);
        const int height = 1 + static_cast<int>(random() % 6);
        const auto pixels = randomPixels(width * factor, height * factor, random);
        const Bytes dots = Twin(pixels, width, factor).dots();
        withEachInstructionSet(
            [&] { ASSERT_EQ(settled(pixels, width, factor), dots) << "picture " << i; });
        if (HasFatalFailure()) return;
    }
}

TEST(SettleDots, PixelsOfAllColoursHaveTheirLuminanceWithEveryInstructionSet) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    std::vector<std::uint32_t> pixels(50'000);
    for (std::uint32_t& pixel : pixels) pixel = static_cast<std::uint32_t>(random());
    const Bytes dots = Twin(pixels, 200, 1).dots();
    withEachInstructionSet([&] { ASSERT_EQ(settled(pixels, 200, 1), dots); });
}

}  // namespace
}  // namespace tavio::test
