#include "TavioIpadSDK/pictures/picture_rows.h"

#include <cstddef>
#include <cstdint>
#include <random>
#include <span>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "TavioIpadSDK/pictures/upright.h"

namespace tavio::pictures {
namespace {

// Pixels that are all different.
Picture numberedPicture(std::int32_t width, std::int32_t height, int orientation) {
    Picture picture{width, height, {}, orientation};
    const auto count = static_cast<UInt32>(width * height);
    for (UInt32 number = 0; number < count; ++number) picture.pixels.push_back(0xFF000000 + number);
    return picture;
}

// All rows, asked for in portions of sizes that `portion` tells.
template <typename Portion>
std::vector<UInt32> pixelsOf(PictureRows& rows, Portion portion) {
    std::vector<UInt32> pixels;
    const auto width = static_cast<std::size_t>(rows.width());
    const auto height = static_cast<std::size_t>(rows.height());
    while (pixels.size() < width * height) {
        const std::int32_t maxRows = portion();
        const std::span<const UInt32> next = rows.next(maxRows);
        EXPECT_FALSE(next.empty());
        EXPECT_EQ(next.size() % width, 0U);
        EXPECT_LE(next.size() / width, static_cast<std::size_t>(maxRows));
        if (next.empty()) break;
        pixels.insert(pixels.end(), next.begin(), next.end());
    }
    return pixels;
}

TEST(RowsOfAPicture, AreThoseOfTheUprightPictureInEveryOrientation) {
    for (int orientation = 0; orientation <= 9; ++orientation) {
        for (const auto& [width, height] : {std::pair{5, 3}, {1, 7}, {7, 1}, {1, 1}, {4, 4}}) {
            SCOPED_TRACE(testing::Message() << orientation << ": " << width << " x " << height);
            const Picture picture = numberedPicture(width, height, orientation);
            const Picture expected = upright(picture);
            const auto rows = rowsOf(picture);
            EXPECT_EQ(rows->width(), expected.width);
            EXPECT_EQ(rows->height(), expected.height);
            EXPECT_EQ(pixelsOf(*rows, [] { return 1; }), expected.pixels);
        }
    }
}

TEST(RowsOfAPicture, AreTheSameInPortionsOfAnySize) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    for (int round = 0; round < 300; ++round) {
        const int orientation = 1 + round % 8;
        const auto width = static_cast<std::int32_t>(1 + random() % 40);
        const auto height = static_cast<std::int32_t>(1 + random() % 40);
        SCOPED_TRACE(testing::Message() << orientation << ": " << width << " x " << height);
        const Picture picture = numberedPicture(width, height, orientation);
        const auto rows = rowsOf(picture);
        const auto portion = [&random] { return static_cast<std::int32_t>(1 + random() % 50); };
        ASSERT_EQ(pixelsOf(*rows, portion), upright(picture).pixels);
    }
}

TEST(RowsOfAPicture, EndWithNothingHoweverOftenTheyAreAskedFor) {
    for (const int orientation : {1, 6}) {
        const Picture picture = numberedPicture(3, 2, orientation);
        const auto rows = rowsOf(picture);
        EXPECT_EQ(pixelsOf(*rows, [] { return 1000; }).size(), 6U);
        EXPECT_TRUE(rows->next(1).empty());
        EXPECT_TRUE(rows->next(1000).empty());
    }
}

TEST(RowsOfAPicture, AreNotCopiedWhereItStandsUprightAlready) {
    const Picture picture = numberedPicture(3, 5, 1);
    const auto rows = rowsOf(picture);
    EXPECT_EQ(rows->next(2).data(), picture.pixels.data());
    EXPECT_EQ(rows->next(1).data(), picture.pixels.data() + 6);
    const std::span<const UInt32> rest = rows->next(1000);
    EXPECT_EQ(rest.data(), picture.pixels.data() + 9);
    EXPECT_EQ(rest.size(), 6U);
}

TEST(RowsOfAPicture, AreNoneWhereThereAreNoPixels) {
    for (int orientation = 1; orientation <= 8; ++orientation) {
        for (const auto& [width, height] : {std::pair{0, 0}, {5, 0}, {0, 5}}) {
            SCOPED_TRACE(testing::Message() << orientation << ": " << width << " x " << height);
            const Picture picture{width, height, {}, orientation};
            const auto rows = rowsOf(picture);
            EXPECT_EQ(rows->width(), 0);
            EXPECT_EQ(rows->height(), 0);
            EXPECT_TRUE(rows->next(1).empty());
        }
    }
}

}  // namespace
}  // namespace tavio::pictures
