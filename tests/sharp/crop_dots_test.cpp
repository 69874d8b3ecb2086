#include "TavioIpadSDK/sharp/crop_dots.h"

#include <random>

#include <gtest/gtest.h>

#include "support/random_dots.h"

namespace tavio::sharp {
namespace {

TEST(Blacken, MakesTheDotsOfTheAreaBlackAndNoOthers) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(seed);
    test::Random random(seed);
    for (int repeat = 0; repeat < 300; ++repeat) {
        Dots dots = whiteDots(test::between(random, 1, 200), test::between(random, 1, 9));
        const std::int32_t left = test::between(random, 0, dots.width);
        const std::int32_t top = test::between(random, 0, dots.height);
        const DotArea area{left, top, test::between(random, 0, dots.width - left),
                           test::between(random, 0, dots.height - top)};
        blacken(dots, area);
        EXPECT_EQ(blackDots(dots), std::int64_t{area.width} * area.height);
        for (std::int32_t y = 0; y < dots.height; ++y)
            for (std::int32_t x = 0; x < dots.width; ++x)
                ASSERT_EQ(dots.isBlack(x, y),
                          x >= left && x < left + area.width && y >= top && y < top + area.height);
    }
}

TEST(CroppedDots, AreThoseOfTheArea) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(seed);
    test::Random random(seed);
    for (int repeat = 0; repeat < 300; ++repeat) {
        const Dots dots =
            test::randomDots(random, test::between(random, 1, 200), test::between(random, 1, 9));
        const std::int32_t left = test::between(random, 0, dots.width);
        const std::int32_t top = test::between(random, 0, dots.height);
        const DotArea area{left, top, test::between(random, 0, dots.width - left),
                           test::between(random, 0, dots.height - top)};
        const Dots part = croppedDots(dots, area);
        ASSERT_EQ(part.width, area.width);
        ASSERT_EQ(part.height, area.height);
        std::int64_t black = 0;
        for (std::int32_t y = 0; y < area.height; ++y)
            for (std::int32_t x = 0; x < area.width; ++x) {
                ASSERT_EQ(part.isBlack(x, y), dots.isBlack(left + x, top + y));
                black += part.isBlack(x, y) ? 1 : 0;
            }
        EXPECT_EQ(blackDots(part), black);
    }
}

}  // namespace
}  // namespace tavio::sharp
