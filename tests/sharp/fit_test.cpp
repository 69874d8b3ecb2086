#include "TavioIpadSDK/sharp/fit.h"

#include <ostream>
#include <random>

#include <gtest/gtest.h>

namespace tavio::sharp {

// For failures of the tests below.
void PrintTo(const Fitted& fitted, std::ostream* out) {
    *out << fitted.quarterTurns << " turns, " << fitted.width << " x " << fitted.height
         << ", window " << fitted.left << ", " << fitted.top << ", " << fitted.windowWidth << " x "
         << fitted.windowHeight << ", scale " << fitted.scale;
}

namespace {

constexpr std::int32_t kBoxWidth = 1650;
constexpr std::int32_t kBoxHeight = 600;

FitRules rules(Fit fit, Turn turn = Turn::k0) {
    return {fit, turn, kBoxWidth, kBoxHeight};
}

Fitted whole(int quarterTurns, std::int64_t width, std::int64_t height, double scale) {
    return {quarterTurns, width, height, 0, 0, width, height, scale};
}

TEST(Fit, KeepsTheOwnSizeOfWhatFits) {
    EXPECT_EQ(fitted(400, 300, rules(Fit::kShrink)), whole(0, 400, 300, 1));
    EXPECT_EQ(fitted(1650, 600, rules(Fit::kShrink)), whole(0, 1650, 600, 1));
    EXPECT_EQ(fitted(1650.4, 600.4, rules(Fit::kShrink)), whole(0, 1650, 600, 1));
    EXPECT_EQ(fitted(399.5, 300.4, rules(Fit::kShrink)), whole(0, 400, 300, 1));
}

TEST(Fit, ShrinksWhatIsLargerThanTheBox) {
    EXPECT_EQ(fitted(3300, 600, rules(Fit::kShrink)), whole(0, 1650, 300, 0.5));
    EXPECT_EQ(fitted(1650, 1200, rules(Fit::kShrink)), whole(0, 825, 600, 0.5));
}

TEST(Fit, ContainsKeepingProportions) {
    EXPECT_EQ(fitted(400, 300, rules(Fit::kContain)), whole(0, 800, 600, 2));
    EXPECT_EQ(fitted(3300, 300, rules(Fit::kContain)), whole(0, 1650, 150, 0.5));
}

TEST(Fit, CoversTheBoxWithTheMiddleOfThePicture) {
    const Fitted tall = fitted(400, 300, rules(Fit::kCover));
    EXPECT_EQ(tall, (Fitted{0, 1650, 1238, 0, 319, 1650, 600, 4.125}));
    const Fitted wide = fitted(6600, 600, rules(Fit::kCover));
    EXPECT_EQ(wide, (Fitted{0, 6600, 600, 2475, 0, 1650, 600, 1}));
}

TEST(Fit, StretchesToTheBox) {
    EXPECT_EQ(fitted(3300, 300, rules(Fit::kStretch)), whole(0, 1650, 600, 0.5));
}

TEST(Fit, KeepsTheActualSizeBeyondTheBox) {
    EXPECT_EQ(fitted(3300, 1200, rules(Fit::kActual)), whole(0, 3300, 1200, 1));
}

TEST(Fit, TurnsClockwiseByQuarters) {
    EXPECT_EQ(fitted(300, 400, rules(Fit::kShrink, Turn::k90)), whole(1, 400, 300, 1));
    EXPECT_EQ(fitted(300, 400, rules(Fit::kShrink, Turn::k180)), whole(2, 300, 400, 1));
    EXPECT_EQ(fitted(300, 400, rules(Fit::kShrink, Turn::k270)), whole(3, 400, 300, 1));
}

TEST(Fit, TurnsByItselfOnlyWhatIsThenPrintedLarger) {
    EXPECT_EQ(fitted(600, 1650, rules(Fit::kShrink, Turn::kAuto)), whole(1, 1650, 600, 1));
    EXPECT_EQ(fitted(300, 400, rules(Fit::kShrink, Turn::kAuto)), whole(0, 300, 400, 1))
        << "fits as it is";
    EXPECT_EQ(fitted(300, 400, rules(Fit::kContain, Turn::kAuto)), whole(1, 800, 600, 2));
    EXPECT_EQ(fitted(400, 300, rules(Fit::kContain, Turn::kAuto)), whole(0, 800, 600, 2));
    EXPECT_EQ(fitted(500, 500, rules(Fit::kContain, Turn::kAuto)).quarterTurns, 0);
    EXPECT_EQ(fitted(600, 1650, rules(Fit::kActual, Turn::kAuto)), whole(1, 1650, 600, 1));
    EXPECT_EQ(fitted(900, 1650, rules(Fit::kActual, Turn::kAuto)), whole(0, 900, 1650, 1))
        << "fits neither way";
}

TEST(Fit, IsAtLeastOneDotAndStaysInRange) {
    EXPECT_EQ(fitted(0.001, 0.001, rules(Fit::kActual)), whole(0, 1, 1, 1));
    EXPECT_EQ(fitted(1e6, 1, rules(Fit::kContain)).windowHeight, 1);
    EXPECT_EQ(fitted(1e300, 1, rules(Fit::kActual)).width, 2147483647);
}

TEST(Fit, NeverLeavesTheBoxUnlessAskedTo) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> side(0.1, 20000);
    for (int run = 0; run < 10'000; ++run) {
        const double width = side(random);
        const double height = side(random);
        for (const Fit fit : {Fit::kShrink, Fit::kContain, Fit::kCover, Fit::kStretch}) {
            const Fitted result = fitted(width, height, rules(fit, Turn::kAuto));
            ASSERT_TRUE(result.windowWidth >= 1 && result.windowWidth <= kBoxWidth &&
                        result.windowHeight >= 1 && result.windowHeight <= kBoxHeight)
                << width << " x " << height << ": " << testing::PrintToString(result);
        }
    }
}

}  // namespace
}  // namespace tavio::sharp
