#include "TavioIpadSDK/sharp/islands.h"

#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

#include "support/random_dots.h"

namespace tavio::sharp {
namespace {

using Islands = std::vector<Rectangle>;

// A picture with these black rectangles.
Dots blackIn(std::int32_t width, std::int32_t height, const Islands& boxes) {
    return test::dotsWhere(width, height, [&](std::int32_t x, std::int32_t y) {
        return std::ranges::any_of(boxes, [&](const Rectangle& box) {
            return x >= box.left && x < box.right && y >= box.top && y < box.bottom;
        });
    });
}

TEST(Islands, AreCutWhereEnoughRowsOrColumnsAreBlank) {
    const Islands apart{{3, 2, 9, 5}, {3, 12, 9, 14}, {29, 12, 100, 20}};
    EXPECT_EQ(islandsOf(blackIn(130, 30, apart), 20), apart);
    EXPECT_EQ(islandsOf(blackIn(130, 30, apart), 21), (Islands{{3, 2, 9, 5}, {3, 12, 100, 20}}));
    const Islands closer{{3, 2, 9, 5}, {3, 11, 9, 14}};
    EXPECT_EQ(islandsOf(blackIn(130, 30, closer), 20), (Islands{{3, 2, 9, 14}}));
}

TEST(Islands, AreCutAgainInTheOtherDirection) {
    const Islands boxes{{0, 0, 10, 30}, {40, 0, 50, 5}, {40, 20, 50, 30}};
    EXPECT_EQ(islandsOf(blackIn(64, 30, boxes), 20), boxes);
}

TEST(Islands, OfABlankPictureAreNone) {
    EXPECT_TRUE(islandsOf(Dots{}, 20).empty());
    EXPECT_TRUE(islandsOf(blackIn(100, 100, {}), 20).empty());
}

// Frames within frames, each open at one side: a cut takes one side off.
TEST(Islands, AreCutALimitedNumberOfTimes) {
    Islands sides;
    for (std::int32_t i = 0; i < 10; ++i) {
        const std::int32_t near = 40 * i, far = 800 - 40 * i;
        sides.push_back({near, near, near + 5, far});
        sides.push_back({near + 30, near, far, near + 5});
    }
    const Islands islands = islandsOf(blackIn(800, 800, sides), 20);
    EXPECT_GT(islands.size(), 4U);
    EXPECT_LT(islands.size(), sides.size());
}

TEST(Islands, HoldEachBlackDotOnce) {
    for (unsigned seed = 0; seed < 300; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        test::Random random(seed);
        const Dots dots =
            test::randomDots(random, test::between(random, 1, 200), test::between(random, 1, 100));
        const Islands islands = islandsOf(dots, test::between(random, 8, 30));
        for (std::int32_t y = 0; y < dots.height; ++y) {
            for (std::int32_t x = 0; x < dots.width; ++x) {
                const auto count = std::ranges::count_if(islands, [&](const Rectangle& island) {
                    return x >= island.left && x < island.right && y >= island.top &&
                           y < island.bottom;
                });
                ASSERT_LE(count, 1);
                ASSERT_TRUE(count == 1 || !dots.isBlack(x, y));
            }
        }
    }
}

TEST(Runs, AreThoseOfTheBits) {
    const std::vector<std::uint64_t> words{0x8000'0000'0000'0001, 0x8000'0000'0000'0000, 3};
    std::vector<DotRun> runs;
    forEachRun(words, [&](const DotRun& run) { runs.push_back(run); });
    EXPECT_EQ(runs, (std::vector<DotRun>{{0, 1}, {63, 65}, {190, 192}}));
}

}  // namespace
}  // namespace tavio::sharp
