#include "TavioIpadSDK/encoder/band_stream.h"

#include <gtest/gtest.h>

#include "support/bitmaps.h"
#include "support/random_picture.h"

namespace tavio::encoder {
namespace {

using test::allBlack;
using test::Rows;

RowGeometry geometryOf(std::size_t width) {
    InfoHeader info;
    info.biWidth = static_cast<UInt32>(width);
    info.biHeight = 1;
    info.biBitCount = 1;
    return rowGeometry(info);
}

Bytes pixelsOf(const Rows& rows, bool paddingBits) {
    const Bytes file = test::bitmapFile(rows, paddingBits);
    return {file.begin() + 62, file.end()};
}

// A stream and all that it is made from.
class WholeStream {
  public:
    explicit WholeStream(const Rows& rows, const Placement& placement = {}, bool paddingBits = true)
        : pixels_(pixelsOf(rows, paddingBits)),
          stream(pixels_, geometryOf(rows[0].size()), static_cast<UInt32>(rows.size()),
                 test::bytesOf("OPENING"), placement) {
        const auto whole = stream.read(0, stream.size());
        bytes.assign(whole.begin(), whole.end());
    }

  private:
    Bytes pixels_;

  public:
    BandStream stream;
    Bytes bytes;
};

// The first band of a picture as text: what its columns print.
Rows firstBand(const Rows& rows, bool paddingBits = true) {
    const Bytes pixels = pixelsOf(rows, paddingBits);
    const RowGeometry row = geometryOf(rows[0].size());
    Bytes band(row.RowSize * 8);
    fillBand(std::span(pixels).last(band.size()), row, true, band);
    Rows printed;
    for (int bit = 7; bit >= 0; --bit) {
        std::string line;
        for (const Byte column : band) line += ((column >> bit) & 1) != 0 ? 'X' : ' ';
        printed.push_back(line);
    }
    return printed;
}

std::string blanks(std::size_t count) {
    return std::string(count, ' ');
}
std::string dots(std::size_t count) {
    return std::string(count, 'X');
}

TEST(BandStream, PutsTheTopRowInTheTopBitAndTheLeftEdgeInTheFirstColumn) {
    Rows rows(8, blanks(32));
    rows[0][0] = 'X';
    rows[7][1] = 'X';
    rows[3][31] = 'X';
    EXPECT_EQ(firstBand(rows), rows);
}

TEST(BandStream, PrintsAllOfARowWithoutPadding) {
    for (const std::size_t width : {32U, 64U, 96U})
        EXPECT_EQ(firstBand(allBlack(width, 8)), allBlack(width, 8));
}

// The half byte left of the padding bytes is blanked in every row but the top one, though it holds
// pixels: of 24 columns, 20 to 23 print in the picture's top row only.
TEST(BandStream, Prints24PixelWidePicturesWithoutTheirLastFourColumnsButInTheTopRow) {
    Rows expected(8, dots(20) + blanks(12));
    expected[0] = dots(24) + blanks(8);
    EXPECT_EQ(firstBand(allBlack(24, 8)), expected);
}

TEST(BandStream, MasksEveryRowWhereTheNibbleCountIsOdd) {
    for (const std::size_t width : {12U, 20U}) {
        const Rows expected(8, dots(width) + blanks(32 - width));
        EXPECT_EQ(firstBand(allBlack(width, 8)), expected) << width;
    }
}

TEST(BandStream, MasksOnlyTheTopRowForWidthsOf25To28Mod32) {
    for (const std::size_t width : {25U, 26U, 27U, 28U}) {
        // Padding bits of 0 show what is masked: a 0 bit left of the mask prints.
        Rows expected(8, dots(32));
        expected[0] = dots(28) + blanks(4);
        EXPECT_EQ(firstBand(allBlack(width, 8), false), expected) << width;
    }
}

TEST(BandStream, LosesTheSharedNibbleInEveryRowButTheTopForWidthsOf5To7Mod8UpTo23) {
    for (const std::size_t width : {5U, 6U, 7U, 13U, 14U, 15U, 21U, 22U, 23U}) {
        const std::size_t kept = width / 8 * 8 + 4;
        Rows expected(8, dots(kept) + blanks(32 - kept));
        expected[0] = dots(width) + blanks(32 - width);
        EXPECT_EQ(firstBand(allBlack(width, 8)), expected) << width;
    }
}

TEST(BandStream, PrintsZeroPaddingBitsInsideANibbleThatAlsoHoldsPixels) {
    Rows rows(8, blanks(30));
    Rows expected(8, blanks(30) + "XX");
    EXPECT_EQ(firstBand(rows, false), expected);
}

TEST(BandStream, KeepsTheRuleOfTheTopRowToTheTopRowOfThePicture) {
    Rows rows = allBlack(24, 16);
    const WholeStream stream(rows);
    const std::string second = "<RC8,0><G32>";
    const auto at =
        std::search(stream.bytes.begin(), stream.bytes.end(), second.begin(), second.end());
    ASSERT_NE(at, stream.bytes.end());
    const Bytes lastColumns(at + static_cast<std::ptrdiff_t>(second.size()) + 20,
                            at + static_cast<std::ptrdiff_t>(second.size()) + 24);
    EXPECT_EQ(lastColumns, Bytes(4, 0));
}

TEST(BandStream, GivesOneBandToEightRowsAndNoPositionBehindIt) {
    const WholeStream stream(allBlack(32, 8));
    EXPECT_EQ(stream.bytes, test::joined({test::bytesOf("OPENING<G32>"), Bytes(32, 255)}));
    EXPECT_EQ(stream.stream.commandAfterLastBand(), "<RC8,0>");
}

TEST(BandStream, DropsTheBottomRowsThatDoNotFillABand) {
    EXPECT_EQ(WholeStream(allBlack(32, 15)).bytes, WholeStream(allBlack(32, 8)).bytes);
    EXPECT_NE(WholeStream(allBlack(32, 16)).bytes, WholeStream(allBlack(32, 8)).bytes);
}

TEST(BandStream, IsEmptyWithoutAWholeBandAndLosesEvenTheOpening) {
    for (std::size_t height = 1; height < 8; ++height) {
        const WholeStream stream(allBlack(32, height), {true, 4, 5, 0});
        EXPECT_EQ(stream.bytes, Bytes{});
        EXPECT_EQ(stream.stream.commandAfterLastBand(), "");
        EXPECT_EQ(stream.stream.afterLastBand().row, 4);
        EXPECT_EQ(stream.stream.afterLastBand().column, 5);
    }
}

TEST(BandStream, AdvancesTheRowByEightABandInLandscape) {
    const Bytes band(32, 255);
    const Bytes expected =
        test::joined({test::bytesOf("OPENING<G32>"), band, test::bytesOf("<RC18,20><G32>"), band,
                      test::bytesOf("<RC26,20><G32>"), band});
    EXPECT_EQ(test::readable(WholeStream(allBlack(32, 24), {true, 10, 20, 576}).bytes),
              test::readable(expected));
}

TEST(BandStream, AdvancesTheColumnInPortraitAndCountsTheRowBackFromTheDotWidth) {
    const Bytes band(32, 255);
    const Bytes expected =
        test::joined({test::bytesOf("OPENING<G32>"), band, test::bytesOf("<RC566,28><G32>"), band,
                      test::bytesOf("<RC566,36><G32>"), band});
    EXPECT_EQ(test::readable(WholeStream(allBlack(32, 24), {false, 10, 20, 576}).bytes),
              test::readable(expected));
}

TEST(BandStream, WrapsPositionsInTwosComplement) {
    EXPECT_EQ(WholeStream(allBlack(32, 8), {true, INT32_MAX, 0, 0}).stream.commandAfterLastBand(),
              "<RC-2147483641,0>");
    EXPECT_EQ(WholeStream(allBlack(32, 8), {false, INT32_MIN, INT32_MAX, 1})
                  .stream.commandAfterLastBand(),
              "<RC-2147483647,-2147483641>");
}

// The bit of the picture at (row, column) after blanking, looked at on its own.
bool printsAlone(const Rows& rows, std::size_t row, std::size_t column, bool paddingBits) {
    const std::size_t width = rows[0].size();
    const RowGeometry geometry = geometryOf(width);
    const std::size_t fromRight = geometry.RowSize - 1 - column / 8;
    if (fromRight < geometry.BytesToIgnore) return false;
    const bool isMaskable = fromRight == geometry.BytesToIgnore && column % 8 >= 4;
    const bool isMasked = row == 0 ? geometry.NibblesToIgnore % 2 == 1 : geometry.BytesToIgnore > 0;
    if (isMaskable && isMasked) return false;
    return column < width ? rows[row][column] == 'X' : !paddingBits;
}

TEST(BandStream, TransposesLikeASlowTwinForEveryWidthUpTo200) {
    test::Random random(20261121);
    for (std::size_t width = 1; width <= 200; ++width) {
        Rows rows(8, blanks(width));
        for (std::string& line : rows)
            for (char& c : line) c = test::chance(random, 50) ? 'X' : ' ';
        const bool paddingBits = test::chance(random, 50);
        const Rows printed = firstBand(rows, paddingBits);
        for (std::size_t y = 0; y < 8; ++y)
            for (std::size_t x = 0; x < printed[0].size(); ++x)
                ASSERT_EQ(printed[y][x] == 'X', printsAlone(rows, y, x, paddingBits))
                    << "width " << width << " row " << y << " column " << x;
    }
}

}  // namespace
}  // namespace tavio::encoder
