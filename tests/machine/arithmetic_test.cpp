#include "TavioIpadSDK/machine/arithmetic.h"

#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

namespace tavio::machine {
namespace {

constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();

TEST(WrappingArithmetic, AddsAndComesBackAtTheOtherEnd) {
    EXPECT_EQ(wrappingAdd(2, 3), 5);
    EXPECT_EQ(wrappingAdd(-2, -3), -5);
    EXPECT_EQ(wrappingAdd(kMost, 1), kLeast);
    EXPECT_EQ(wrappingAdd(kLeast, -1), kMost);
    EXPECT_EQ(wrappingAdd(kMost, kMost), -2);
    EXPECT_EQ(wrappingAdd(kLeast, kLeast), 0);
    EXPECT_EQ(wrappingAdd(kMost, kLeast), -1);
    EXPECT_EQ(wrappingAdd(kMost, 0), kMost);
}

TEST(WrappingArithmetic, SubtractsAndComesBackAtTheOtherEnd) {
    EXPECT_EQ(wrappingSubtract(2, 3), -1);
    EXPECT_EQ(wrappingSubtract(kLeast, 1), kMost);
    EXPECT_EQ(wrappingSubtract(kMost, -1), kLeast);
    EXPECT_EQ(wrappingSubtract(0, kLeast), kLeast);
    EXPECT_EQ(wrappingSubtract(kLeast, kLeast), 0);
    EXPECT_EQ(wrappingSubtract(kLeast, kMost), 1);
}

TEST(WrappingArithmetic, TakesBackWhatItAdded) {
    std::mt19937 random(20240607);
    for (int i = 0; i < 10000; ++i) {
        const auto a = static_cast<std::int32_t>(random());
        const auto b = static_cast<std::int32_t>(random());
        ASSERT_EQ(wrappingSubtract(wrappingAdd(a, b), b), a) << a << ", " << b;
    }
}

TEST(TruncateToInt32, CutsTowardsZero) {
    EXPECT_EQ(truncateToInt32(0.0), 0);
    EXPECT_EQ(truncateToInt32(-0.0), 0);
    EXPECT_EQ(truncateToInt32(2.999999), 2);
    EXPECT_EQ(truncateToInt32(-2.999999), -2);
    EXPECT_EQ(truncateToInt32(0.999999), 0);
    EXPECT_EQ(truncateToInt32(-0.999999), 0);
    EXPECT_EQ(truncateToInt32(std::numeric_limits<double>::denorm_min()), 0);
}

TEST(TruncateToInt32, StopsAtTheEndsOfTheRange) {
    EXPECT_EQ(truncateToInt32(2147483646.9), 2147483646);
    EXPECT_EQ(truncateToInt32(2147483647.0), kMost);
    EXPECT_EQ(truncateToInt32(2147483647.5), kMost);
    EXPECT_EQ(truncateToInt32(2147483648.0), kMost);
    EXPECT_EQ(truncateToInt32(1e300), kMost);
    EXPECT_EQ(truncateToInt32(HUGE_VAL), kMost);
    EXPECT_EQ(truncateToInt32(-2147483647.9), -2147483647);
    EXPECT_EQ(truncateToInt32(-2147483648.0), kLeast);
    EXPECT_EQ(truncateToInt32(-2147483648.5), kLeast);
    EXPECT_EQ(truncateToInt32(-2147483649.0), kLeast);
    EXPECT_EQ(truncateToInt32(-1e300), kLeast);
    EXPECT_EQ(truncateToInt32(-HUGE_VAL), kLeast);
}

TEST(TruncateToInt32, TakesNotANumberForZero) {
    EXPECT_EQ(truncateToInt32(std::numeric_limits<double>::quiet_NaN()), 0);
    EXPECT_EQ(truncateToInt32(-std::numeric_limits<double>::quiet_NaN()), 0);
}

}  // namespace
}  // namespace tavio::machine
