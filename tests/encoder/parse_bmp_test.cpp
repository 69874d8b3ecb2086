#include "TavioIpadSDK/encoder/parse_bmp.h"

#include <new>

#include <gtest/gtest.h>

#include "TavioIpadSDK/TavioIpadSDK.h"
#include "TavioIpadSDK/encoder/band_stream.h"
#include "TavioIpadSDK/encoder/state.h"
#include "support/bitmaps.h"
#include "support/fresh_state.h"
#include "support/literal_encoder.h"
#include "support/random_picture.h"

namespace tavio::encoder {
namespace {

using test::allBlack;
using test::bitmapFile;
using test::bytesOf;
using test::joined;
using test::readable;
using test::transport;
using test::TransportCall;

class ParseBmp : public test::FreshState {
  protected:
    ParseBmp() { Mode = "WF"; }

    void placeAt(std::int32_t row, std::int32_t column) {
        originalx = row;
        originaly = column;
    }
};

const Bytes kEightBlack = {255, 255, 255, 255, 128, 128, 128, 128};

TEST_F(ParseBmp, PrintsTheAllBlack8x8PictureAs38Bytes) {
    placeAt(10, 20);
    ParseBMP(bitmapFile(allBlack(8, 8)));
    const Bytes expected = joined({bytesOf("<P1><LM><RE0><DI><RC10,20><G8>"), kEightBlack});
    EXPECT_EQ(transport().calls,
              (std::vector<TransportCall>{{"Write_WF_Data", std::nullopt, expected}}));
    EXPECT_EQ(expected.size(), 38U);
}

TEST_F(ParseBmp, LeavesTheRunsOfTheWorkedExampleInTheLineMap) {
    placeAt(10, 20);
    ParseBMP(bitmapFile(allBlack(8, 8)));
    EXPECT_EQ(linemap[0], (LineParser{31, 8, DATA}));
    EXPECT_EQ(linemap[1], (LineParser{39, 24, ZEROS}));
    EXPECT_EQ(linemap[2], LineParser{});
}

TEST_F(ParseBmp, MakesAFirstPassOf63BytesForItOnceItsLastPositionIsTakenAway) {
    const Bytes file = bitmapFile(allBlack(8, 8));
    InfoHeader info = readInfoHeader(std::span(file).first<kHeaderSize>());
    const Bytes opening = bytesOf("<P1><LM><RE0><DI><RC10,20>");
    BandStream stream(std::span<const Byte>(file).last(32), rowGeometry(info), 8, opening,
                      {.row = 10, .column = 20});
    const Bytes expected =
        joined({bytesOf("<P1><LM><RE0><DI><RC10,20><G32>"), kEightBlack, Bytes(24, 0)});
    EXPECT_EQ(readable(stream.read(0, 100)), readable(expected));
    EXPECT_EQ(stream.size(), 63U);
    EXPECT_EQ(stream.commandAfterLastBand(), "<RC18,20>");
    const test::LiteralJob job{"<P1>", "<LM>", "", 10, 20, 0};
    EXPECT_EQ(test::encodeLiterally(file, job).firstPass, expected);
}

TEST_F(ParseBmp, PrintsInPortraitAtRowsCountedBackFromTheDotWidth) {
    PrinterOrientation = "<PM>";
    portrait_dots = 576;
    placeAt(10, 20);
    test::Rows rows(24, "XX" + std::string(30, ' '));
    ParseBMP(bitmapFile(rows));
    const Bytes columns(2, 255);
    EXPECT_EQ(
        readable(transport().dataSent()),
        readable(joined({bytesOf("<P1><PM><RE0><DI><RC566,20><G2>"), columns,
                         bytesOf("<RC566,28><G2>"), columns, bytesOf("<RC566,36><G2>"), columns})));
}

TEST_F(ParseBmp, KeepsTheJobsRowForAFirstPortraitBandWithoutABlankColumn) {
    PrinterOrientation = "<PM>";
    portrait_dots = 576;
    placeAt(10, 20);
    ParseBMP(bitmapFile(allBlack(32, 16)));
    const Bytes columns(32, 255);
    EXPECT_EQ(readable(transport().dataSent()),
              readable(joined({bytesOf("<P1><PM><RE0><DI><RC10,20><G32>"), columns,
                               bytesOf("<RC566,28><G32>"), columns})));
}

// A lack of memory looks the same from here, and so does a stream that would become too long.
TEST_F(ParseBmp, ShowsTheDimensionsNoticeWhenMemoryRunsOut) {
    transport().failData = [] { throw std::bad_alloc(); };
    ParseBMP(bitmapFile(allBlack(8, 8)));
    EXPECT_EQ(noticeMessages(),
              std::vector<std::string>{"Error - Invalid Image width/height/depth."});
}

TEST_F(ParseBmp, SendsOnlyTheOpeningForFewerThan8Rows) {
    for (std::size_t height = 1; height < 8; ++height) {
        transport().calls.clear();
        ParseBMP(bitmapFile(allBlack(8, height)));
        EXPECT_EQ(transport().calls, (std::vector<TransportCall>{{"Write_WF_Data", std::nullopt,
                                                                  bytesOf("<P1><LM><RE0><DI>")}}));
    }
}

TEST_F(ParseBmp, StoresTheSamePictureAsALogoWithoutGraphics) {
    LogoNumber = "3";
    ParseBMP(bitmapFile(allBlack(8, 8)));
    EXPECT_EQ(transport().calls, (std::vector<TransportCall>{
                                     {"Write_WF", "<RE0><DI><RC0,0><3>\x1B", {}},
                                     {"Write_WF_Data", std::nullopt, bytesOf("<RC8,0>\x1B")}}));
}

TEST_F(ParseBmp, LosesTheTopBandOfALogoOnPurpose) {
    LogoNumber = "12";
    test::Rows rows = allBlack(32, 24);
    rows[0] = std::string(32, ' ');
    ParseBMP(bitmapFile(rows));
    const Bytes band(32, 255);
    EXPECT_EQ(readable(transport().dataSent()),
              readable(joined({bytesOf("<RC24,0><RC8,0><G32>"), band, bytesOf("<RC16,0><G32>"),
                               band, bytesOf("\x1B")})));
}

TEST_F(ParseBmp, SendsNoGraphicsForALogoOfFewerThan16Rows) {
    LogoNumber = "1";
    ParseBMP(bitmapFile(allBlack(32, 15)));
    EXPECT_EQ(readable(transport().dataSent()), "<RC8,0>{1B}");
    transport().calls.clear();
    ParseBMP(bitmapFile(allBlack(32, 7)));
    EXPECT_EQ(readable(transport().dataSent()), "{1B}");
    EXPECT_EQ(transport().textSent(), "<RE0><DI><RC0,0><1>\x1B");
}

TEST_F(ParseBmp, LeavesThePortraitPositionBehindTheLastBandInFrontOfALogo) {
    LogoNumber = "4";
    PrinterOrientation = "<PM>";
    portrait_dots = 576;
    ParseBMP(bitmapFile(test::Rows(16, std::string(32, ' '))));
    EXPECT_EQ(readable(transport().dataSent()), "<RC576,16>{1B}");
}

TEST_F(ParseBmp, SetsThePlaceToZeroForALogoAndKeepsItForAPrint) {
    placeAt(7, 9);
    ParseBMP(bitmapFile(allBlack(8, 8)));
    EXPECT_EQ(originalx, 7);
    EXPECT_EQ(originaly, 9);
    LogoNumber = "0";
    ParseBMP(bitmapFile(allBlack(8, 8)));
    EXPECT_EQ(originalx, 0);
    EXPECT_EQ(originaly, 0);
}

TEST_F(ParseBmp, EndsBothWritesOfALogoInEscape) {
    LogoNumber = "5";
    ParseBMP(bitmapFile(allBlack(64, 40)));
    ASSERT_EQ(transport().operations(), (std::vector<std::string>{"Write_WF", "Write_WF_Data"}));
    EXPECT_EQ(transport().calls[0].text->back(), 27);
    EXPECT_EQ(transport().calls[1].data.back(), 27);
}

TEST_F(ParseBmp, CallsNothingButSendDataForAPrintAndEndsWithTheLastGraphicsByte) {
    ParseBMP(bitmapFile(allBlack(64, 40)));
    ASSERT_EQ(transport().operations(), (std::vector<std::string>{"Write_WF_Data"}));
    EXPECT_EQ(transport().dataSent().back(), 255);
}

TEST_F(ParseBmp, CopiesPathAndOrientationAsTheyAre) {
    PrinterPath = "";
    PrinterOrientation = "<XY>";
    ParseBMP(bitmapFile(allBlack(8, 2)));
    EXPECT_EQ(readable(transport().dataSent()), "<XY><RE0><DI>");
}

TEST_F(ParseBmp, MovesTextsIntoTheStreamByTheLowEightBitsOfTheirCharacters) {
    PrinterPath = "é€";
    ParseBMP(bitmapFile(allBlack(8, 2)));
    EXPECT_EQ(readable(transport().dataSent()), "{E9}{AC}<LM><RE0><DI>");
}

TEST_F(ParseBmp, ScansTheOpeningTextForPositionsToo) {
    PrinterPath = "<RC5,6>";
    ParseBMP(bitmapFile(allBlack(32, 8)));
    const test::LiteralJob job{"<RC5,6>", "<LM>", "", 0, 0, 0};
    EXPECT_EQ(readable(transport().dataSent()),
              readable(test::encodeLiterally(bitmapFile(allBlack(32, 8)), job).data));
}

TEST_F(ParseBmp, StillSendsToBluetoothWithoutASession) {
    Mode = "";
    ParseBMP(bitmapFile(allBlack(8, 8)));
    EXPECT_EQ(transport().operations(), (std::vector<std::string>{"Write_BT_Data"}));
}

TEST_F(ParseBmp, EncodesExtremePlacesLikeTheSlowTwin) {
    test::Rows rows = allBlack(96, 24);
    for (std::string& row : rows) row.replace(10, 40, std::string(40, ' '));
    const Bytes file = bitmapFile(rows);
    for (const std::int32_t row : {INT32_MIN, -8, 0, INT32_MAX}) {
        for (const std::int32_t column : {INT32_MIN, -20, -50, 0, INT32_MAX}) {
            for (const char* orientation : {"<LM>", "<PM>"}) {
                PrinterOrientation = orientation;
                portrait_dots = 576;
                placeAt(row, column);
                transport().calls.clear();
                ParseBMP(file);
                const test::LiteralJob job{"<P1>", orientation, "", row, column, 576};
                ASSERT_EQ(readable(transport().dataSent()),
                          readable(test::encodeLiterally(file, job).data));
            }
        }
    }
}

// Graphics made of pieces of commands: the second pass must find the same commands in them.
Bytes commandLikeColumns(test::Random& random, std::size_t count) {
    const std::vector<std::string> pieces = {
        "<RC", "<RC1,2>", ">", ",", "<G", "<G9>", "7",    "-",
        " ",   "<",       "R", "C", "x",  "G>",   "<RC,", std::string(1, 0)};
    Bytes columns;
    while (columns.size() < count) {
        if (test::chance(random, 8)) {
            columns.insert(columns.end(), static_cast<std::size_t>(test::between(random, 1, 30)),
                           0);
        }
        const int index = test::between(random, 0, static_cast<int>(pieces.size()) - 1);
        const std::string& piece = pieces[static_cast<std::size_t>(index)];
        columns.insert(columns.end(), piece.begin(), piece.end());
    }
    columns.resize(count);
    return columns;
}

test::Rows rowsOf(const std::vector<Bytes>& bands) {
    test::Rows rows;
    for (const Bytes& band : bands)
        for (int bit = 7; bit >= 0; --bit) {
            std::string row;
            for (const Byte column : band) row += ((column >> bit) & 1) != 0 ? 'X' : ' ';
            rows.push_back(row);
        }
    return rows;
}

TEST_F(ParseBmp, TakesCommandLikeGraphicsForCommandsExactlyAsTheSlowTwinDoes) {
    for (unsigned seed = 1; seed <= 3000; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        test::Random random(seed);
        const auto width = static_cast<std::size_t>(32 * test::between(random, 1, 4));
        std::vector<Bytes> bands;
        for (int band = test::between(random, 1, 4); band > 0; --band)
            bands.push_back(commandLikeColumns(random, width));
        const Bytes file = bitmapFile(rowsOf(bands));
        const bool isLandscape = test::chance(random, 50);
        const std::string logo = test::chance(random, 30) ? "8" : "";
        const test::LiteralJob job{"<P1>",
                                   isLandscape ? "<LM>" : "<PM>",
                                   logo,
                                   test::between(random, -50, 300),
                                   test::between(random, -50, 300),
                                   576};
        PrinterOrientation = job.orientation;
        LogoNumber = job.logoNumber;
        portrait_dots = job.portraitDots;
        placeAt(job.row, job.column);
        transport().calls.clear();
        ParseBMP(file);
        const auto literal = test::encodeLiterally(file, job);
        ASSERT_EQ(readable(transport().dataSent()), readable(literal.data));
        ASSERT_EQ(transport().textSent(), literal.text);
    }
}

TEST_F(ParseBmp, EndsInTimeForGraphicsFullOfCommandsThatAllReachToTheirBandsEnd) {
    // 33,333 commands, all closed by the ">" of the next band's position: read once for each, they
    // would take as many steps as a billion columns.
    Bytes columns;
    for (std::size_t i = 0; i < 100000; ++i) columns.push_back(static_cast<Byte>("<RC"[i % 3]));
    ParseBMP(bitmapFile(rowsOf({columns, Bytes(100000, 0)})));
    EXPECT_EQ(noticeMessages(), std::vector<std::string>{});
    EXPECT_GT(transport().dataSent().size(), 100000U);
}

}  // namespace
}  // namespace tavio::encoder
