#include "TavioIpadSDK/imaging/dither.h"

#include <vector>

#include <gtest/gtest.h>

#include "TavioIpadSDK/imaging/entries.h"

namespace tavio::imaging {

void PrintTo(const ArgbColor& c, std::ostream* out) {
    *out << "{" << int{c.Alpha} << ": " << int{c.Red} << ", " << int{c.Green} << ", " << int{c.Blue}
         << "}";
}

namespace {

using Records = std::vector<ArgbColor>;

// The errors that the pixel at (x, y) of a 4 x 3 picture passes on; all other pixels are `level`.
Records passedOn(Byte level, int x, int y, ArgbColor original, ArgbColor transformed) {
    Records records(12, ArgbColor{9, level, level, level});
    DitherFloydSteinberg(records, original, transformed, x, y, 4, 3);
    return records;
}

TEST(ToByte, ClampsToOneByte) {
    EXPECT_EQ(ToByte(-1), 0);
    EXPECT_EQ(ToByte(INT32_MIN), 0);
    EXPECT_EQ(ToByte(0), 0);
    EXPECT_EQ(ToByte(255), 255);
    EXPECT_EQ(ToByte(256), 255);
    EXPECT_EQ(ToByte(INT32_MAX), 255);
}

TEST(TransformPixel, MakesBlackOrWhiteAndKeepsAlpha) {
    EXPECT_EQ(TransformPixel({7, 128, 128, 128}), (ArgbColor{7, 0, 0, 0}));
    EXPECT_EQ(TransformPixel({8, 129, 129, 129}), (ArgbColor{8, 255, 255, 255}));
    EXPECT_EQ(TransformPixel({0, 0, 0, 0}), (ArgbColor{0, 0, 0, 0}));
}

TEST(TransformToRgba, RotatesTheChannelsOnPurpose) {
    // Source red 0x11, green 0x22, blue 0x33, alpha 0x44.
    const std::vector<UInt32> words = {0xFFFFFFFF, 0x44332211};
    Records records(2);
    const ArgbColor last = TransformToRGBA(words, records, 2, 1);
    EXPECT_EQ(records[1], (ArgbColor{0x44, 0x22, 0x33, 0x11}));
    EXPECT_EQ(last, records[1]);
}

TEST(TransformToRgba, ReturnsAZeroRecordForNoPixels) {
    EXPECT_EQ(TransformToRGBA({}, {}, 0, 5), ArgbColor{});
}

TEST(Dither, PassesSevenThreeFiveAndOneSixteenths) {
    const Records after = passedOn(100, 2, 0, {9, 16, 16, 16}, {9, 0, 0, 0});
    const ArgbColor unchanged{9, 100, 100, 100};
    EXPECT_EQ(after[3], (ArgbColor{9, 107, 107, 107}));
    EXPECT_EQ(after[5], (ArgbColor{9, 103, 103, 103}));
    EXPECT_EQ(after[6], (ArgbColor{9, 105, 105, 105}));
    EXPECT_EQ(after[7], (ArgbColor{9, 101, 101, 101}));
    for (const std::size_t i : {0U, 1U, 2U, 4U, 8U, 9U, 10U, 11U})
        EXPECT_EQ(after[i], unchanged) << i;
}

TEST(Dither, PushesMidGreyOnFromColumn0) {
    const Records after = passedOn(0, 0, 0, {255, 128, 128, 128}, {255, 0, 0, 0});
    EXPECT_EQ(after[1].Red, 56);
    EXPECT_EQ(after[4].Red, 40);
    EXPECT_EQ(after[5].Red, 8);
    EXPECT_EQ(after[3].Red, 0);  // what lies before column 0 in memory: nothing goes below left
    EXPECT_EQ(after[1].Green, 56);
    EXPECT_EQ(after[1].Blue, 56);
}

TEST(Dither, TakesAwayFrom127ErrorsRoundingTowardsMinusInfinity) {
    const Records after = passedOn(200, 2, 0, {9, 128, 128, 128}, {9, 255, 255, 255});
    EXPECT_EQ(after[3].Red, 200 - 56);
    EXPECT_EQ(after[5].Red, 200 - 24);
    EXPECT_EQ(after[6].Red, 200 - 40);
    EXPECT_EQ(after[7].Red, 200 - 8);
}

TEST(Dither, ShiftsAnErrorOfMinusOneToMinusOneForEveryWeight) {
    const Records after = passedOn(50, 2, 0, {9, 254, 254, 254}, {9, 255, 255, 255});
    for (const std::size_t i : {3U, 5U, 6U, 7U}) EXPECT_EQ(after[i].Red, 49) << i;
    EXPECT_EQ(passedOn(50, 2, 0, {9, 240, 240, 240}, {9, 255, 255, 255})[7].Red, 49);  // -15 x 1
}

TEST(Dither, CrossesTheErrorsOfGreenAndBlueOnPurpose) {
    const Records after = passedOn(0, 0, 0, {9, 0, 160, 32}, {9, 0, 0, 0});
    EXPECT_EQ(after[1], (ArgbColor{9, 0, 14, 70}));
}

TEST(Dither, LeavesColumn0OfTheNextRowAloneFromColumn1) {
    EXPECT_EQ(passedOn(10, 1, 0, {9, 255, 255, 255}, {9, 0, 0, 0})[4], (ArgbColor{9, 10, 10, 10}));
    EXPECT_NE(passedOn(10, 2, 0, {9, 255, 255, 255}, {9, 0, 0, 0})[5], (ArgbColor{9, 10, 10, 10}));
}

TEST(Dither, PassesNothingOverTheEdges) {
    const ArgbColor untouched{9, 10, 10, 10};
    const Records atBottomRight = passedOn(10, 3, 2, {9, 255, 255, 255}, {9, 0, 0, 0});
    EXPECT_EQ(atBottomRight, Records(12, untouched));
    const Records atRight = passedOn(10, 3, 0, {9, 255, 255, 255}, {9, 0, 0, 0});
    EXPECT_EQ(atRight[8], untouched);
    EXPECT_EQ(atRight[4], untouched);  // the next row's first pixel, which is next in memory
}

TEST(Dither, ClampsAfterEveryAddition) {
    EXPECT_EQ(passedOn(250, 2, 0, {9, 255, 255, 255}, {9, 0, 0, 0})[3].Red, 255);
    EXPECT_EQ(passedOn(3, 2, 0, {9, 130, 130, 130}, {9, 255, 255, 255})[3].Red, 0);
}

TEST(MakeEntries, PutsTheLastRowFirstAndFillsEachUpWithWhite) {
    const ArgbColor black{9, 0, 0, 0};
    const ArgbColor white{9, 255, 255, 255};
    const Records records = {black, white, white,   // the top row
                             white, white, black};  // the bottom row
    Bytes entries(64, 0xA5);
    makeEntries(records, 3, entries);
    Bytes expected(64, WHITE);
    expected[2] = BLACK;
    expected[32] = BLACK;
    EXPECT_EQ(entries, expected);
}

TEST(MakeEntries, JudgesRecordsByTheirGreyValue) {
    const Records records = {
        {9, 128, 128, 128}, {9, 129, 129, 129}, {9, 0, 255, 0}, {9, 0, 0, 255}};
    Bytes entries(32);
    makeEntries(records, 4, entries);
    EXPECT_EQ(Bytes(entries.begin(), entries.begin() + 4), (Bytes{BLACK, WHITE, WHITE, BLACK}));
}

}  // namespace
}  // namespace tavio::imaging
