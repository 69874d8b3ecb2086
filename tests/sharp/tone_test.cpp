#include "TavioIpadSDK/sharp/tone.h"

#include <algorithm>
#include <random>

#include <gtest/gtest.h>

#include "support/random_picture.h"

namespace tavio::sharp {
namespace {

constexpr Tone kPlain{.balancesDotGain = false};

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

TEST(ToneTable, NeverFalls) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(seed);
    test::Random random(seed);
    for (int repeat = 0; repeat < 1000; ++repeat) {
        const Tone tone{.brightness = test::between(random, -120, 120) * 1.0,
                        .contrast = test::between(random, -120, 120) * 1.0,
                        .gamma = test::between(random, 0, 120) / 10.0,
                        .balancesDotGain = test::chance(random, 50)};
        const ToneTable table = toneTable(tone);
        EXPECT_TRUE(std::ranges::is_sorted(table));
    }
}

TEST(ToneTable, EndsOfTheRangesAreAllBlackAllWhiteAllGreyAndOnlyBothOfThem) {
    const auto all = [](Tone tone, Byte value) {
        tone.balancesDotGain = false;
        return std::ranges::all_of(toneTable(tone), [=](Byte other) { return other == value; });
    };
    EXPECT_TRUE(all({.brightness = -100}, 0));
    EXPECT_TRUE(all({.brightness = 100}, 255));
    EXPECT_TRUE(all({.contrast = -100}, 128));
    const ToneTable hard = toneTable({.contrast = 100, .balancesDotGain = false});
    EXPECT_EQ(std::ranges::count(hard, 0), 128);
    EXPECT_EQ(std::ranges::count(hard, 255), 128);
}

TEST(ToneTable, GammaMakesTheMiddleLighterOrDarker) {
    EXPECT_EQ(toneTable({.gamma = 2, .balancesDotGain = false})[64], 128);
    EXPECT_EQ(toneTable({.gamma = 0.5, .balancesDotGain = false})[128], 64);
}

}  // namespace
}  // namespace tavio::sharp
