#include "TavioIpadSDK/sharp/tone.h"

#include <algorithm>
#include <random>

#include <gtest/gtest.h>

#include "support/random_picture.h"

namespace tavio::sharp {
namespace {

constexpr Tone kPlain{.dotGain = 0};

TEST(ToneTable, ChangesNothingWithoutATone) {
    const ToneTable table = toneTable(kPlain);
    for (std::size_t value = 0; value < table.size(); ++value) EXPECT_EQ(table[value], value);
}

TEST(ToneTable, MakesGreysLighterForDotGainAndKeepsBlackAndWhite) {
    const ToneTable table = toneTable({});
    EXPECT_EQ(table[0], 0);
    EXPECT_EQ(table[128], 138);
    EXPECT_EQ(table[254], 254);
    EXPECT_EQ(table[255], 255);
}

TEST(ToneTable, IsLighterInTheMiddleForEachStepOfDotGain) {
    for (std::int32_t step = 0; step < kMaxDotGain; ++step) {
        const ToneTable table = toneTable({.dotGain = step});
        const ToneTable next = toneTable({.dotGain = step + 1});
        EXPECT_EQ(table[0], 0) << step;
        EXPECT_EQ(table[254], 254) << step;
        EXPECT_EQ(table[255], 255) << step;
        for (std::size_t value = 85; value <= 221; ++value)
            EXPECT_LT(table[value], next[value]) << step << ", " << value;
    }
}

TEST(ToneTable, TakesTheUsualDotGainIfNoneIsGivenAndTheNearestOutsideTheRange) {
    EXPECT_EQ(toneTable({}), toneTable({.dotGain = kUsualDotGain}));
    for (int value = 0; value < 256; ++value)
        EXPECT_EQ(toneTable({})[static_cast<std::size_t>(value)],
                  balancedGrey(static_cast<Byte>(value)));
    EXPECT_EQ(toneTable({.dotGain = -1}), toneTable({.dotGain = 0}));
    EXPECT_EQ(toneTable({.dotGain = 10}), toneTable({.dotGain = kMaxDotGain}));
}

TEST(ToneTable, NeverFalls) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(seed);
    test::Random random(seed);
    for (int repeat = 0; repeat < 1000; ++repeat) {
        const Tone tone{.brightness = test::between(random, -120, 120) * 1.0,
                        .contrast = test::between(random, -120, 120) * 1.0,
                        .gamma = test::between(random, 0, 120) / 10.0,
                        .dotGain = test::between(random, -1, 10)};
        const ToneTable table = toneTable(tone);
        EXPECT_TRUE(std::ranges::is_sorted(table));
    }
}

TEST(ToneTable, EndsOfTheRangesAreAllBlackAllWhiteAllGreyAndOnlyBothOfThem) {
    const auto all = [](Tone tone, Byte value) {
        tone.dotGain = 0;
        return std::ranges::all_of(toneTable(tone), [=](Byte other) { return other == value; });
    };
    EXPECT_TRUE(all({.brightness = -100}, 0));
    EXPECT_TRUE(all({.brightness = 100}, 255));
    EXPECT_TRUE(all({.contrast = -100}, 128));
    const ToneTable hard = toneTable({.contrast = 100, .dotGain = 0});
    EXPECT_EQ(std::ranges::count(hard, 0), 128);
    EXPECT_EQ(std::ranges::count(hard, 255), 128);
}

TEST(ToneTable, GammaMakesTheMiddleLighterOrDarker) {
    EXPECT_EQ(toneTable({.gamma = 2, .dotGain = 0})[64], 128);
    EXPECT_EQ(toneTable({.gamma = 0.5, .dotGain = 0})[128], 64);
}

}  // namespace
}  // namespace tavio::sharp
