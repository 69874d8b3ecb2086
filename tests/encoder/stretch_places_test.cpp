#include "TavioIpadSDK/encoder/stretch_places.h"

#include <gtest/gtest.h>

namespace tavio::encoder {
namespace {

using Place = std::pair<std::int32_t, std::int32_t>;

Place next(StretchPlaces& places, std::int32_t left, const BandNumbers& band) {
    const Position at = places.next(left, band);
    return {at.row, at.column};
}

TEST(StretchPlaces, LeaveTheJobsColumnOutOfALandscapeBandsFirstStretchOnly) {
    StretchPlaces places({true, 10, 20, 576}, {34, 20});
    EXPECT_EQ(next(places, 25, {10, 20, 64}), (Place{10, 25}));
    EXPECT_EQ(next(places, 25 + 3 + 30, {10, 20, 64}), (Place{10, 78}));
    EXPECT_EQ(next(places, 30, {18, 20, 64}), (Place{18, 30}));
}

TEST(StretchPlaces, TakeTheJobsColumnWhereALandscapeColumnIsZero) {
    StretchPlaces places({true, 10, -25, 576}, {34, -25});
    EXPECT_EQ(next(places, 0, {10, -25, 64}), (Place{10, -25}));
    EXPECT_EQ(next(places, 25, {10, -25, 64}), (Place{10, -25}));
    EXPECT_EQ(next(places, 26, {10, -25, 64}), (Place{10, 1}));
}

TEST(StretchPlaces, CountPortraitRowsBackFromTheDotWidth) {
    StretchPlaces places({false, 10, 20, 576}, {566, 44});
    EXPECT_EQ(next(places, 0, {10, 20, 64}), (Place{566, 20}));
    EXPECT_EQ(next(places, 40, {10, 20, 64}), (Place{526, 20}));
    EXPECT_EQ(next(places, 0, {566, 28, 64}), (Place{566, 28}));
}

TEST(StretchPlaces, TakeTheDotWidthLessTheJobsRowWhereAPortraitRowIsTheDotWidth) {
    StretchPlaces places({false, -40, 20, 576}, {616, 44});
    EXPECT_EQ(next(places, 40, {0, 20, 64}), (Place{616, 20}));
    EXPECT_EQ(next(places, 41, {0, 20, 64}), (Place{575, 20}));
}

TEST(StretchPlaces, WrapIn32Bits) {
    StretchPlaces portrait({false, INT32_MAX, 0, INT32_MIN}, {0, 0});
    EXPECT_EQ(next(portrait, 1, {0, 7, 64}), (Place{0, 7}));
    StretchPlaces landscape({true, 0, INT32_MAX, 0}, {8, 0});
    EXPECT_EQ(next(landscape, 1, {8, 0, 64}), (Place{8, INT32_MIN}));
}

TEST(StretchPlaces, WouldRepeatOnceALandscapeBandHasBegun) {
    StretchPlaces landscape({true, 10, 20, 576}, {34, 20});
    EXPECT_FALSE(landscape.wouldRepeat({10, 20, 64}));
    landscape.next(25, {10, 20, 64});
    EXPECT_TRUE(landscape.wouldRepeat({10, 20, 64}));
    EXPECT_FALSE(landscape.wouldRepeat({18, 20, 64}));
    EXPECT_TRUE(StretchPlaces({false, 10, 20, 576}, {0, 0}).wouldRepeat({10, 20, 64}));
}

}  // namespace
}  // namespace tavio::encoder
