#include "TavioIpadSDK/encoder/band_scanner.h"

#include <vector>

#include <gtest/gtest.h>

#include "encoder/byte_stream.h"
#include "support/bitmaps.h"
#include "support/random_picture.h"

namespace tavio::encoder {
namespace {

using test::bytesOf;

struct Seen {
    std::size_t startCommand, firstByte;
    std::int32_t row, column, count;
    bool operator==(const Seen&) const = default;
};

void PrintTo(const Seen& seen, std::ostream* out) {
    *out << "{" << seen.startCommand << ", " << seen.firstByte << ", " << seen.row << ", "
         << seen.column << ", " << seen.count << "}";
}

std::vector<Seen> bandsIn(const std::string& text) {
    ByteStream stream(bytesOf(text));
    BandScanner scanner(stream);
    std::vector<Seen> seen;
    while (const auto band = scanner.next())
        seen.push_back({band->startCommand, band->firstByte, band->numbers.row,
                        band->numbers.column, band->numbers.count});
    return seen;
}

using Bands = std::vector<Seen>;

TEST(IntegerValue, SkipsBlanksTakesOneSignAndStopsAtTheFirstOtherCharacter) {
    const auto value = [](const std::string& text) { return integerValue(bytesOf(text)); };
    EXPECT_EQ(value("42"), 42);
    EXPECT_EQ(value("  \t-7rest"), -7);
    EXPECT_EQ(value("+9"), 9);
    EXPECT_EQ(value("--9"), 0);
    EXPECT_EQ(value("- 9"), 0);
    EXPECT_EQ(value(""), 0);
    EXPECT_EQ(value("x1"), 0);
    EXPECT_EQ(value(std::string("12\0"
                                "34",
                                5)),
              12);
    EXPECT_EQ(value("007"), 7);
}

TEST(IntegerValue, SaturatesAt32Bits) {
    const auto value = [](const std::string& text) { return integerValue(bytesOf(text)); };
    EXPECT_EQ(value("2147483647"), INT32_MAX);
    EXPECT_EQ(value("2147483648"), INT32_MAX);
    EXPECT_EQ(value("-2147483648"), INT32_MIN);
    EXPECT_EQ(value("-2147483649"), INT32_MIN);
    EXPECT_EQ(value("99999999999999999999999999"), INT32_MAX);
    EXPECT_EQ(value("-99999999999999999999999999"), INT32_MIN);
}

TEST(BandScanner, ReadsPositionCountAndTheFirstByteBehind) {
    EXPECT_EQ(bandsIn("<P1><RC10,-20><G3>abc"), (Bands{{4, 18, 10, -20, 3}}));
}

TEST(BandScanner, FindsPositionsInTheOpeningToo) {
    EXPECT_EQ(bandsIn("<RC1,2>xx"), (Bands{{0, 10, 1, 2, 0}}));
}

TEST(BandScanner, TakesTheBytesRCInsideGraphicsForACommand) {
    EXPECT_EQ(bandsIn("<RC1,2><G9><RC3,4>zz"), (Bands{{0, 11, 1, 2, 9}, {11, 21, 3, 4, 9}}));
}

TEST(BandScanner, BeginsDataFourBehindThePositionWhereNoGraphicsFollow) {
    EXPECT_EQ(bandsIn("<RC1,2><G5>abcde<RC3,4>"), (Bands{{0, 11, 1, 2, 5}, {16, 26, 3, 4, 5}}));
}

TEST(BandScanner, KeepsTextsThatTheCommandLeavesEmpty) {
    EXPECT_EQ(bandsIn("<RC7,8><G2>ab<RC,9><G>"), (Bands{{0, 11, 7, 8, 2}, {13, 22, 7, 9, 2}}));
    EXPECT_EQ(bandsIn("<RC7,8><G2>ab<RC9,><G1>"), (Bands{{0, 11, 7, 8, 2}, {13, 23, 9, 8, 1}}));
}

TEST(BandScanner, TakesTheLastCommaForTheSeparator) {
    EXPECT_EQ(bandsIn("<RC1,2,3><G1>"), (Bands{{0, 13, 1, 3, 1}}));
}

TEST(BandScanner, ReadsTheColumnFromTheSecondByteOnWhereThereIsNoComma) {
    // From index 1 up to the ">": "55<RC6" has the value 55.
    EXPECT_EQ(bandsIn("x55<RC6><G1>"), (Bands{{3, 12, 0, 55, 1}}));
}

TEST(BandScanner, AbandonsAPositionThatIsNotClosed) {
    EXPECT_EQ(bandsIn("<RC1,2"), Bands{});
    EXPECT_EQ(bandsIn("<RC1,2><G1>a<RC3,4"), (Bands{{0, 11, 1, 2, 1}}));
}

TEST(BandScanner, AbandonsABandWhoseGraphicsCommandIsNotClosed) {
    EXPECT_EQ(bandsIn("<RC1,2><G44"), Bands{});
}

TEST(BandScanner, ReadsNestedPositionsUpToTheSameClose) {
    EXPECT_EQ(bandsIn("<RC1,<RC5,6><G1>"), (Bands{{0, 16, 1, 6, 1}, {5, 16, 5, 6, 1}}));
    EXPECT_EQ(bandsIn("<RC1,2<RC><G1>"), (Bands{{0, 14, 1, 2, 1}, {6, 14, 1, 0, 1}}));
}

// Bands that share their columns, passed over together in one scanner and stepped through in the
// other: both must have read the same numbers in the end.
TEST(BandScanner, PassesOverSharingBandsAsIfTheyWereReadOneByOne) {
    const std::vector<std::string> pieces = {"<RC", "<RC5", "<RC,", "<RC12,", "<RC-3", "<RC 4",
                                             ",",   "x",    ">",    "><G40>", "7>",    "<RCx"};
    for (unsigned seed = 1; seed <= 5000; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        test::Random random(seed);
        std::string text = "x9<RC1,2><G3>";
        for (int i = test::between(random, 1, 60); i > 0; --i)
            text += pieces[random() % pieces.size()] + std::string(random() % 3 == 0 ? 70 : 0, 'y');
        ByteStream stream(bytesOf(text));
        BandScanner steps(stream);
        BandScanner passes(stream);
        auto expected = steps.next();
        while (const auto band = passes.next()) {
            ASSERT_TRUE(expected);
            ASSERT_EQ(band->startCommand, expected->startCommand);
            ASSERT_EQ(band->numbers.row, expected->numbers.row);
            ASSERT_EQ(band->numbers.column, expected->numbers.column);
            ASSERT_EQ(band->numbers.count, expected->numbers.count);
            BandScanner::Passed counted;
            std::size_t repeating = 0;
            const int how = test::between(random, 0, 3);
            if (how == 1) passes.passSharing();
            if (how == 2) counted = passes.countSharing();
            if (how == 3) repeating = passes.passRepeating();
            BandScanner::Passed stepped;
            expected = steps.next();
            const auto isPassed = [&] {
                if (how == 3) return stepped.count < repeating;
                return how != 0 && expected->firstByte == band->firstByte;
            };
            for (; expected && isPassed(); expected = steps.next()) {
                ++stepped.count;
                stepped.indices += expected->startCommand;
                if (how != 3) continue;
                ASSERT_EQ(expected->firstByte, band->firstByte);
                ASSERT_EQ(expected->numbers.row, band->numbers.row);
                ASSERT_EQ(expected->numbers.column, band->numbers.column);
            }
            if (how == 2) {
                ASSERT_EQ(counted.count, stepped.count);
                ASSERT_EQ(counted.indices, stepped.indices);
            }
        }
        ASSERT_FALSE(expected);
    }
}

}  // namespace
}  // namespace tavio::encoder
