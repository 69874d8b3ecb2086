#include "TavioIpadSDK/sharp/halftone.h"

#include <algorithm>
#include <random>
#include <stdexcept>

#include <gtest/gtest.h>

#include "TavioIpadSDK/pictures/picture_rows.h"
#include "support/instruction_sets.h"
#include "support/literal_halftone.h"
#include "support/memory_rows.h"
#include "support/random_picture.h"

namespace tavio::sharp {
namespace {

using test::between;
using test::Random;

constexpr int kKinds = 6;

// Noise, solid values with some greys, near white, near black, a gradient, one value.
Byte greyOfKind(Random& random, int kind, int column, Byte flat) {
    const int noise = between(random, 0, 255);
    switch (kind) {
        case 0:
            return static_cast<Byte>(noise);
        case 1:
            return static_cast<Byte>(noise < 100 ? 0 : noise < 200 ? 255 : noise);
        case 2:
            return static_cast<Byte>(250 + noise % 6);
        case 3:
            return static_cast<Byte>(noise % 6);
        case 4:
            return static_cast<Byte>(column % 256);
        default:
            return flat;
    }
}

Bytes randomGreys(Random& random, int width, int height) {
    const int kind = between(random, 0, kKinds - 1);
    const auto flat = static_cast<Byte>(random());
    Bytes greys;
    for (int row = 0; row < height; ++row)
        for (int column = 0; column < width; ++column)
            greys.push_back(greyOfKind(random, kind, column, flat));
    return greys;
}

Halftone randomHalftone(Random& random) {
    Halftone halftone;
    if (test::chance(random, 30)) halftone.method = Method::kThreshold;
    halftone.threshold = static_cast<Byte>(random());
    if (test::chance(random, 60)) halftone.tone.dotGain = between(random, 0, kMaxDotGain);
    if (test::chance(random, 20)) halftone.tone.gamma = between(random, 1, 30) / 10.0;
    if (test::chance(random, 20)) halftone.tone.contrast = between(random, -100, 100);
    if (test::chance(random, 20)) halftone.tone.brightness = between(random, -100, 100);
    return halftone;
}

Bytes halftonedBits(int width, int height, const Bytes& greys, const Halftone& halftone,
                    bool mayUseThreads, int maxRows) {
    test::MemoryRows rows(width, height, greys, maxRows);
    const Dots dots = halftoned(rows, halftone, mayUseThreads);
    EXPECT_EQ(dots.width, width);
    EXPECT_EQ(dots.height, height);
    return {dots.bits.begin(), dots.bits.end()};
}

class HalftoneTest : public testing::Test {
  protected:
    void expectLiteral(int width, int height) {
        SCOPED_TRACE(testing::Message() << width << " x " << height);
        const Bytes greys = randomGreys(random, width, height);
        const Halftone halftone = randomHalftone(random);
        const Dots literal = test::halftoneLiterally(width, height, greys, halftone);
        const Bytes expected(literal.bits.begin(), literal.bits.end());
        test::withEachInstructionSet([&] {
            const int maxRows = between(random, 1, 100);
            ASSERT_EQ(halftonedBits(width, height, greys, halftone, true, maxRows), expected);
        });
    }

    unsigned seed = std::random_device{}();
    Random random{seed};
    testing::ScopedTrace trace{__FILE__, __LINE__, seed};
};

TEST_F(HalftoneTest, EqualsItsLiteralTwinAtEverySmallSize) {
    for (int width = 1; width <= 12; ++width)
        for (int height = 1; height <= 12 && !HasFatalFailure(); ++height)
            expectLiteral(width, height);
}

TEST_F(HalftoneTest, EqualsItsLiteralTwinAtWidthsAndHeightsAroundMultiplesOf64) {
    for (const int side : {31, 32, 33, 63, 64, 65, 66, 127, 128, 129, 191, 192, 193, 255, 256, 257})
        for (int repeat = 0; repeat < 2 && !HasFatalFailure(); ++repeat) {
            expectLiteral(side, between(random, 1, 140));
            expectLiteral(between(random, 1, 300), side);
        }
}

TEST_F(HalftoneTest, EqualsItsLiteralTwinAtFullWidth) {
    expectLiteral(5100, between(random, 1, 150));
}

TEST_F(HalftoneTest, KeepsSolidValuesBesideGreys) {
    for (int repeat = 0; repeat < 20; ++repeat) {
        const int width = between(random, 1, 200);
        Bytes greys = randomGreys(random, width, 70);
        for (Byte& grey : greys)
            if (test::chance(random, 40)) grey = test::chance(random, 50) ? 0 : 255;
        test::withEachInstructionSet([&] {
            test::MemoryRows rows(width, 70, greys);
            const Dots dots = halftoned(rows, {}, false);
            for (int at = 0; at < width * 70; ++at) {
                const Byte grey = greys[static_cast<std::size_t>(at)];
                const bool isSolid = grey == 0 || grey == 255;
                ASSERT_TRUE(!isSolid || dots.isBlack(at % width, at / width) == (grey == 0));
            }
        });
    }
}

// A black dot between whites keeps its error to itself.
TEST_F(HalftoneTest, PassesNoErrorsOfSolidValues) {
    Bytes greys(64 * 64, 255);
    for (std::size_t at = 0; at < greys.size(); at += 3) greys[at] = 0;
    const Bytes bits = halftonedBits(64, 64, greys, {}, false, 64);
    for (std::size_t at = 0; at < greys.size(); ++at)
        ASSERT_EQ((bits[at / 8] >> (7 - at % 8) & 1) != 0, greys[at] == 0);
}

// Seen on paper, the wedge has the values that it had, where the paper can show them.
TEST_F(HalftoneTest, KeepsTheMeanOfGreysOnPaper) {
    constexpr int kSide = 96;
    for (int step = 0; step < 16; ++step) {
        const auto grey = static_cast<Byte>(17 * step);
        test::MemoryRows rows(kSide, kSide, Bytes(std::size_t{kSide} * kSide, grey));
        const double seen = test::whiteShare(halftoned(rows, {}, false), {16, 16, 80, 80});
        EXPECT_NEAR(seen, std::max(grey / 255.0, 0.049), 0.02) << "grey " << int{grey};
    }
}

// So on paper whose dots grow more. The values lie on and between those of the curves.
TEST_F(HalftoneTest, KeepsTheMeanOfGreysOnPaperForEveryDotGain) {
    constexpr int kSide = 96;
    const auto seen = [](int grey, int dotGain) {
        const Bytes greys(std::size_t{kSide} * kSide, static_cast<Byte>(grey));
        test::MemoryRows rows(kSide, kSide, greys);
        const Dots dots = halftoned(rows, {.tone = {.dotGain = dotGain}}, false);
        return test::whiteShare(dots, {24, 24, 72, 72}, 1 + 0.05 * dotGain);
    };
    for (int dotGain = kUsualDotGain; dotGain <= kMaxDotGain; ++dotGain)
        for (int grey = 8; grey < 255; grey += 25)
            EXPECT_NEAR(seen(grey, dotGain), std::max(grey / 255.0, seen(0, dotGain)), 0.03)
                << "grey " << grey << ", dot gain " << dotGain;
}

TEST_F(HalftoneTest, ThresholdMakesSmallerValuesBlack) {
    const Bytes greys = {0, 127, 128, 255};
    const Halftone halftone{.method = Method::kThreshold};
    EXPECT_EQ(halftonedBits(4, 1, greys, halftone, false, 1)[0], 0xC0);
}

TEST_F(HalftoneTest, ThrowsIfRowsAreMissing) {
    for (const Method method : {Method::kDithered, Method::kThreshold}) {
        test::MemoryRows rows(2000, 1000, Bytes(2000 * 500, 100));
        EXPECT_THROW(halftoned(rows, {.method = method}, true), pictures::DamagedPicture);
    }
}

TEST_F(HalftoneTest, RefusesTooManyDots) {
    test::MemoryRows rows(1 << 15, (1 << 13) + 1, {});
    EXPECT_THROW(halftoned(rows, {}, false), std::length_error);
}

}  // namespace
}  // namespace tavio::sharp
