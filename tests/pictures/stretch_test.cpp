#include "TavioIpadSDK/platform/stretch.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <random>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "sample_pictures.h"

namespace tavio::platform {
namespace {

using samples::asText;
using samples::randomPicture;

constexpr std::uint32_t kSeed = 20240611;

// The weight of source pixel `from` in target pixel `to`; those of a target pixel add up to
// totalWeight. A growing direction: a triangle around the target's centre, which is kept between
// the centres of the outermost source pixels. A shrinking one: the overlap of the two pixels.
std::int64_t weight(std::int64_t from, std::int64_t sources, std::int64_t to,
                    std::int64_t targets) {
    if (targets > sources) {
        const std::int64_t pixel = 2 * targets;
        const std::int64_t centre =
            std::clamp((2 * to + 1) * sources - targets, std::int64_t{0}, (sources - 1) * pixel);
        return std::max<std::int64_t>(0, pixel - std::abs(centre - from * pixel));
    }
    const std::int64_t begin = std::max(to * sources, from * targets);
    const std::int64_t end = std::min((to + 1) * sources, (from + 1) * targets);
    return std::max<std::int64_t>(0, end - begin);
}

std::int64_t totalWeight(std::int64_t sources, std::int64_t targets) {
    return targets > sources ? 2 * targets : sources;
}

// The same as stretch() for one channel of one pixel, from all source pixels, slowly.
UInt32 slowChannel(const Picture& source, const Picture& target, std::int64_t row,
                   std::int64_t column, unsigned shift) {
    const std::int64_t across = totalWeight(source.width, target.width);
    const std::int64_t down = totalWeight(source.height, target.height) * 65536;
    std::int64_t sum = 0;
    for (std::int64_t y = 0; y < source.height; ++y) {
        std::int64_t line = 0;
        for (std::int64_t x = 0; x < source.width; ++x) {
            const auto at = static_cast<std::size_t>(y * source.width + x);
            const std::int64_t value = (source.pixels[at] >> shift) & 0xFF;
            line += value * weight(x, source.width, column, target.width);
        }
        sum += (line * 65536 * 2 + across) / (2 * across) *
               weight(y, source.height, row, target.height);
    }
    return static_cast<UInt32>((2 * sum + down) / (2 * down));
}

Picture slowStretch(const Picture& picture, std::int32_t width, std::int32_t height) {
    const Picture source = upright(picture);
    Picture target{width, height, {}, 1};
    for (std::int64_t row = 0; row < height; ++row) {
        for (std::int64_t column = 0; column < width; ++column) {
            UInt32 pixel = 0;
            for (const unsigned shift : {0U, 8U, 16U, 24U})
                pixel |= slowChannel(source, target, row, column, shift) << shift;
            target.pixels.push_back(pixel);
        }
    }
    return target;
}

Picture stretched(const Picture& picture, std::int32_t width, std::int32_t height) {
    Picture target{width, height, {}, 1};
    stretch(picture, width, height, target.pixels);
    return target;
}

TEST(Stretch, EqualsItsSlowTwin) {
    std::mt19937 random(kSeed);
    std::uniform_int_distribution<std::int32_t> size(1, 24);
    for (int round = 0; round < 1500; ++round) {
        Picture picture = randomPicture(random, size(random), size(random), round % 2 == 0);
        picture.orientation = 1 + round % 8;
        const std::int32_t width = round % 5 == 0 ? 1 : size(random);
        const std::int32_t height = round % 7 == 0 ? 1 : size(random);
        SCOPED_TRACE("seed " + std::to_string(kSeed) + ", round " + std::to_string(round) + ", " +
                     std::to_string(picture.width) + " x " + std::to_string(picture.height) +
                     " to " + std::to_string(width) + " x " + std::to_string(height));
        ASSERT_EQ(asText(stretched(picture, width, height)),
                  asText(slowStretch(picture, width, height)));
    }
}

TEST(Stretch, EqualsItsSlowTwinOnLinesAcrossSeveralTiles) {
    std::mt19937 random(kSeed);
    for (const auto& [from, to] : {std::pair{2500, 2047}, {7, 2100}, {1500, 1501}, {1025, 1025}}) {
        SCOPED_TRACE(std::to_string(from) + " to " + std::to_string(to));
        const Picture row = randomPicture(random, from, 1, false);
        EXPECT_EQ(asText(stretched(row, to, 1)), asText(slowStretch(row, to, 1)));
        const Picture column = randomPicture(random, 1, from, false);
        EXPECT_EQ(asText(stretched(column, 2, to)), asText(slowStretch(column, 2, to)));
    }
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
    constexpr std::int32_t kLong = 3'000'001;
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

TEST(Stretch, KeepsTheMemoryOfItsTarget) {
    std::vector<UInt32> out(1000, 77);
    const UInt32* memory = out.data();
    const Picture picture{2, 2, {1, 2, 3, 4}, 1};
    stretch(picture, 10, 10, out);
    EXPECT_EQ(out.size(), 100U);
    EXPECT_EQ(out.data(), memory);
    stretch(picture, 40, 25, out);
    EXPECT_EQ(out.size(), 1000U);
    EXPECT_EQ(out.data(), memory);
}

TEST(Stretch, GivesNothingForAnEmptySizeOrPicture) {
    std::vector<UInt32> out(5, 77);
    stretch(Picture{1, 1, {5}, 1}, 0, 7, out);
    EXPECT_TRUE(out.empty());
    out.assign(5, 77);
    stretch(Picture{1, 1, {5}, 1}, 7, -1, out);
    EXPECT_TRUE(out.empty());
    out.assign(5, 77);
    stretch(Picture{}, 7, 7, out);
    EXPECT_TRUE(out.empty());
}

TEST(Stretch, RefusesATargetOfTooManyPixels) {
    std::vector<UInt32> out;
    EXPECT_THROW(stretch(Picture{1, 1, {5}, 1}, 1 << 15, (1 << 13) + 1, out), std::length_error);
}

}  // namespace
}  // namespace tavio::platform
