#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "TavioIpadSDK/pictures/upright.h"
#include "pictures/sample_pictures.h"
#include "stretch/slow_resample.h"
#include "support/instruction_sets.h"

namespace tavio::stretch {
namespace {

using pictures::Picture;
using pictures::upright;

using pictures::samples::asText;
using pictures::samples::randomPicture;

constexpr std::uint32_t kSeed = 20240611;

std::string sizes(const Picture& picture, std::int32_t width, std::int32_t height) {
    return std::to_string(picture.width) + " x " + std::to_string(picture.height) + " to " +
           std::to_string(width) + " x " + std::to_string(height);
}

// With every instruction set.
void expectAsItsSlowTwin(const Picture& picture, std::int32_t width, std::int32_t height) {
    SCOPED_TRACE(sizes(picture, width, height));
    const Picture expected = slowStretch(picture, width, height);
    test::withEachInstructionSet(
        [&] { EXPECT_TRUE(stretched(picture, width, height).pixels == expected.pixels); });
}

TEST(Stretch, EqualsItsSlowTwinAtRandomSizes) {
    std::mt19937 random(kSeed);
    std::uniform_int_distribution<std::int32_t> side(1, 130);
    for (int round = 0; round < 400; ++round) {
        SCOPED_TRACE("seed " + std::to_string(kSeed) + ", round " + std::to_string(round));
        Picture picture = randomPicture(random, side(random), side(random), round % 2 == 0);
        picture.orientation = 1 + round % 8;
        const std::int32_t width = round % 5 == 0 ? 1 : side(random);
        const std::int32_t height = round % 7 == 0 ? 1 : side(random);
        expectAsItsSlowTwin(picture, width, height);
        if (HasFailure()) return;
    }
}

TEST(Stretch, EqualsItsSlowTwinAtSmallSizes) {
    std::mt19937 random(kSeed);
    std::uniform_int_distribution<std::int32_t> side(1, 9);
    for (int round = 0; round < 1500; ++round) {
        SCOPED_TRACE("seed " + std::to_string(kSeed) + ", round " + std::to_string(round));
        const Picture picture = randomPicture(random, side(random), side(random), round % 2 == 0);
        expectAsItsSlowTwin(picture, side(random), side(random));
        if (HasFailure()) return;
    }
}

// Blends of such factors often lie exactly between two bytes.
TEST(Stretch, EqualsItsSlowTwinAtSimpleFactors) {
    std::mt19937 random(kSeed);
    const std::vector<std::pair<int, int>> factors = {
        {1, 1}, {2, 1}, {3, 2}, {4, 1}, {8, 1}, {3, 1}, {1, 2}, {1, 4}, {1, 8}, {2, 3}, {3, 4}};
    for (const auto& [across, acrossBy] : factors) {
        for (const auto& [down, downBy] : factors) {
            const Picture picture =
                randomPicture(random, 12 * acrossBy, 5 * downBy, (across + down) % 2 == 0);
            expectAsItsSlowTwin(picture, 12 * across, 5 * down);
        }
    }
}

TEST(Stretch, EqualsItsSlowTwinOnLongLines) {
    std::mt19937 random(kSeed);
    for (const auto& [from, to] :
         {std::pair{2500, 2047}, {7, 2100}, {1500, 1501}, {1025, 1025}, {5100, 13}, {9, 40000}}) {
        expectAsItsSlowTwin(randomPicture(random, from, 2, false), to, 3);
        expectAsItsSlowTwin(randomPicture(random, 3, from, false), 2, to);
    }
}

TEST(Stretch, EqualsItsSlowTwinWhereOnlySomeRowsAreOpaque) {
    std::mt19937 random(kSeed);
    Picture picture = randomPicture(random, 40, 40, true);
    const Picture transparent = randomPicture(random, 40, 40, false);
    for (const std::size_t row : {3U, 4U, 9U, 20U, 39U}) {
        std::copy_n(transparent.pixels.begin() + static_cast<std::ptrdiff_t>(row * 40), 40,
                    picture.pixels.begin() + static_cast<std::ptrdiff_t>(row * 40));
    }
    for (const auto& [width, height] :
         {std::pair{60, 100}, {60, 30}, {30, 100}, {30, 30}, {40, 90}})
        expectAsItsSlowTwin(picture, width, height);
}

TEST(Stretch, EqualsItsSlowTwinAtPageSize) {
    std::mt19937 random(kSeed);
    const Picture picture = randomPicture(random, 400, 300, true);
    for (const auto& [width, height] : {std::pair{1700, 1100}, {165, 60}, {1021, 77}, {99, 601}})
        expectAsItsSlowTwin(picture, width, height);
}

TEST(Stretch, LetsAPictureOfThatSizeThroughBitForBit) {
    std::mt19937 random(kSeed);
    const Picture picture = randomPicture(random, 37, 23, false);
    EXPECT_EQ(asText(stretched(picture, 37, 23)), asText(picture));
}

TEST(Stretch, TurnsAPictureOfThatSizeBitForBit) {
    std::mt19937 random(kSeed);
    for (int orientation = 1; orientation <= 8; ++orientation) {
        SCOPED_TRACE(orientation);
        Picture picture = randomPicture(random, 9, 5, false);
        picture.orientation = orientation;
        const Picture turned = upright(picture);
        EXPECT_EQ(asText(stretched(picture, turned.width, turned.height)), asText(turned));
    }
}

TEST(Stretch, KeepsAPictureOfOneColour) {
    std::mt19937 random(kSeed);
    std::uniform_int_distribution<std::int32_t> size(1, 300);
    for (int round = 0; round < 100; ++round) {
        SCOPED_TRACE("seed " + std::to_string(kSeed) + ", round " + std::to_string(round));
        const UInt32 colour = randomPicture(random, 1, 1, false).pixels.front();
        Picture picture{size(random), size(random), {}, 1};
        picture.pixels.assign(
            static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height),
            colour);
        const Picture result = stretched(picture, size(random), size(random));
        ASSERT_TRUE(std::all_of(result.pixels.begin(), result.pixels.end(),
                                [colour](UInt32 pixel) { return pixel == colour; }));
    }
}

TEST(Stretch, KeepsOneColourOnVeryLongLines) {
    constexpr std::int32_t kLong = 1'100'001;
    const Picture line{kLong, 1, std::vector<UInt32>(kLong, 0xFFFFFEFF), 1};
    const Picture column{1, kLong, std::vector<UInt32>(kLong, 0xFFFFFEFF), 1};
    for (const std::int32_t size : {1, 7, kLong - 1, kLong + 1}) {
        SCOPED_TRACE(size);
        for (const Picture& result : {stretched(line, size, 1), stretched(column, 1, size)}) {
            EXPECT_TRUE(std::all_of(result.pixels.begin(), result.pixels.end(),
                                    [](UInt32 pixel) { return pixel == 0xFFFFFEFF; }));
        }
    }
}

TEST(Stretch, KeepsColoursPremultiplied) {
    std::mt19937 random(kSeed);
    std::uniform_int_distribution<std::int32_t> size(1, 60);
    for (int round = 0; round < 100; ++round) {
        SCOPED_TRACE("seed " + std::to_string(kSeed) + ", round " + std::to_string(round));
        const Picture picture = randomPicture(random, size(random), size(random), false);
        for (const UInt32 pixel : stretched(picture, size(random), size(random)).pixels) {
            const UInt32 alpha = pixel >> 24;
            ASSERT_LE(pixel & 0xFF, alpha);
            ASSERT_LE((pixel >> 8) & 0xFF, alpha);
            ASSERT_LE((pixel >> 16) & 0xFF, alpha);
        }
    }
}

TEST(Stretch, AveragesTheAreaWhereItShrinks) {
    const Picture picture{4, 1, {0, 100, 200, 30}, 1};
    EXPECT_EQ(stretched(picture, 2, 1).pixels, (std::vector<UInt32>{50, 115}));
    // Each third covers a whole pixel and a third of one: (3 * 0 + 100) / 4, and so on.
    EXPECT_EQ(stretched(picture, 3, 1).pixels, (std::vector<UInt32>{25, 150, 73}));
}

TEST(Stretch, BlendsBetweenCentresWhereItGrows) {
    const Picture picture{2, 1, {0, 100}, 1};
    EXPECT_EQ(stretched(picture, 4, 1).pixels, (std::vector<UInt32>{0, 25, 75, 100}));
    EXPECT_EQ(stretched(picture, 3, 2).pixels, (std::vector<UInt32>{0, 50, 100, 0, 50, 100}));
}

TEST(Stretch, RoundsOnlyOnceForBothDirections) {
    // Rounding after each direction would give 1 for the second.
    EXPECT_EQ(stretched(Picture{2, 2, {0, 1, 1, 0}, 1}, 1, 1).pixels, std::vector<UInt32>{1});
    EXPECT_EQ(stretched(Picture{2, 2, {0, 1, 0, 0}, 1}, 1, 1).pixels, std::vector<UInt32>{0});
}

}  // namespace
}  // namespace tavio::stretch
