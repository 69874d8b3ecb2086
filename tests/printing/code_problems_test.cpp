// Codes that cannot be printed, and those that are printed with a warning.

#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "printing/told.h"
#include "tavio/printing/job.h"

namespace tavio::printing {
namespace {

using test::Lines;
using test::told;

constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();

// 600 x 400 dots.
Ticket ticket() {
    return Ticket({.stock = Stock::ofInches(3, 2), .resolution = 200});
}

Lines problemsOf(CodeKind kind, const std::string& data, const CodeOptions& options = {},
                 Place place = {}) {
    return told(encode(ticket().code(kind, data, place, options)));
}

Lines badData(const std::string& sentence) {
    return {"bad-data 0.0: " + sentence};
}
Lines badSetting(const std::string& sentence) {
    return {"bad-setting 0.0: " + sentence};
}
Lines smallBox(const std::string& sentence) {
    return {"small-box 0.0: " + sentence};
}

// ---- Data ---------------------------------------------------------------------------------------

TEST(CodeData, MustBeThere) {
    EXPECT_EQ(problemsOf(CodeKind::kQr, ""), badData("the QR code has no data: give some"));
    EXPECT_EQ(problemsOf(CodeKind::kItf, ""), badData("the ITF code has no data: give some"));
}

TEST(CodeData, OfEan13HaveTheRightCheckDigit) {
    EXPECT_EQ(problemsOf(CodeKind::kEan13, "4006381333930"),
              badData("the EAN-13 has a wrong check digit, 0: make it 1, or leave it out"));
    EXPECT_EQ(
        problemsOf(CodeKind::kEan13, "40063813339"),
        badData("the EAN-13 has 12 digits and a check digit, but the data have 11: give 12 or "
                "13"));
    EXPECT_EQ(problemsOf(CodeKind::kEan13, "0000000000000"), Lines());
}

TEST(CodeData, OfDigitsNameAnotherCharacter) {
    EXPECT_EQ(
        problemsOf(CodeKind::kEan13, "40063813339X"),
        badData("the EAN-13 holds digits only, not \"X\" (U+0058), character 12: leave it out"));
    EXPECT_EQ(
        problemsOf(CodeKind::kItf, "12 34"),
        badData("the ITF code holds digits only, not \" \" (U+0020), character 3: leave it out"));
    EXPECT_EQ(problemsOf(CodeKind::kItf, std::string("1\0", 2)),
              badData("the ITF code holds digits only, not U+0000, character 2: leave it out"));
}

TEST(CodeData, OfCode128AreLatin1) {
    EXPECT_EQ(problemsOf(CodeKind::kCode128, "Caf\u00e9 \u00ff"), Lines());
    EXPECT_EQ(problemsOf(CodeKind::kCode128, "\u00e9: 5 \u20ac"),
              badData("the Code 128 holds characters up to U+00FF, not \"\u20ac\" (U+20AC), "
                      "character 6: replace "
                      "it, or take a QR code"));
}

TEST(CodeData, MayHaveAnyCharacter) {
    const std::string data("\0\x01\x7F\u00e9\u20ac\u6771\U0001F3AB", 15);
    for (const CodeKind kind :
         {CodeKind::kQr, CodeKind::kPdf417, CodeKind::kAztec, CodeKind::kDataMatrix})
        EXPECT_EQ(problemsOf(kind, data), Lines()) << nameOf(kind);
}

TEST(CodeData, MustBeUtf8) {
    for (const char* data : {"\xFF", "abc\xC3", "\xED\xA0\x80", "\xC0\x80"}) {
        EXPECT_EQ(problemsOf(CodeKind::kAztec, data),
                  badData("the Aztec code holds text, and the data are not UTF-8"));
    }
}

TEST(CodeData, TellHowMuchFits) {
    const CodeOptions options{.size = ModuleDots{1}};
    const auto letters = [](std::size_t count) { return std::string(count, 'x'); };
    EXPECT_EQ(problemsOf(CodeKind::kQr, letters(2331), options), Lines());
    EXPECT_EQ(problemsOf(CodeKind::kQr, letters(2332), options),
              badData("the QR code cannot hold 2332 bytes of data, only the first 2331: shorten "
                      "them"));
    EXPECT_EQ(problemsOf(CodeKind::kDataMatrix, std::string(3117, '1'), options),
              badData("the Data Matrix code cannot hold 3117 bytes of data, only the first 3116: "
                      "shorten them"));
    EXPECT_EQ(
        problemsOf(CodeKind::kItf, std::string(91, '1'), options),
        badData("the ITF code cannot hold 92 bytes of data, only the first 90: shorten them"));
    EXPECT_EQ(problemsOf(CodeKind::kQr, letters(8001), options),
              badData("the QR code cannot hold 8001 bytes: give less, a link for example"));
    EXPECT_EQ(problemsOf(CodeKind::kQr, letters(std::size_t{1} << 26), options),
              badData("the QR code cannot hold 67108864 bytes: give less, a link for example"));
}

// A character is not cut in two.
TEST(CodeData, TellHowManyWholeCharactersFit) {
    std::string euros;
    for (int count = 0; count < 1000; ++count) euros += "\u20ac";
    CodeOptions options{.size = ModuleDots{1}};
    options.correction = Correction::kHigh;
    const Lines lines = problemsOf(CodeKind::kQr, euros, options);
    ASSERT_EQ(lines.size(), 1U);
    const std::string before = "only the first ";
    const std::size_t at = lines[0].find(before);
    ASSERT_NE(at, std::string::npos) << lines[0];
    const auto fits = std::stoul(lines[0].substr(at + before.size()));
    EXPECT_EQ(fits % 3, 0U);
    EXPECT_EQ(problemsOf(CodeKind::kQr, euros.substr(0, fits), options), Lines());
    EXPECT_NE(problemsOf(CodeKind::kQr, euros.substr(0, fits + 3), options), Lines());
}

TEST(CodeData, OfManyCharactersAreRefusedQuickly) {
    for (const CodeKind kind : {CodeKind::kQr, CodeKind::kCode128, CodeKind::kPdf417,
                                CodeKind::kAztec, CodeKind::kDataMatrix}) {
        std::string data;
        while (data.size() < 7990) data += "aB1~9 #x\n{\u00e9";
        const Lines lines = problemsOf(kind, data);
        ASSERT_EQ(lines.size(), 1U);
        EXPECT_EQ(lines[0].find("bad-data 0.0: "), 0U) << lines[0];
    }
}

// ---- Boxes --------------------------------------------------------------------------------------

CodeOptions inBox(const CodeSize& size, Size box, Turn turn = Turn::k0) {
    return {.size = size, .box = box, .turn = turn, .barReduction = {}};
}

TEST(CodeBoxes, ThatAreTooSmallNameWhatWouldDo) {
    EXPECT_EQ(
        problemsOf(CodeKind::kDataMatrix, "123456", inBox(ModuleDots{6}, {83, 84})),
        smallBox("the Data Matrix code with modules of 6 dots does not fit into 83 x 84 dots: "
                 "give it 84 x 84 dots, or modules of 5 dots"));
    EXPECT_EQ(problemsOf(CodeKind::kDataMatrix, "123456", inBox(ModuleDots{6}, {84, 84})), Lines());
    EXPECT_EQ(
        problemsOf(CodeKind::kDataMatrix, "123456", inBox(ModuleDots{6}, {13, 84})),
        smallBox("the Data Matrix code with modules of 6 dots does not fit into 13 x 84 dots: "
                 "give it 84 x 84 dots"));
    EXPECT_EQ(
        problemsOf(CodeKind::kDataMatrix, "123456", inBox(LargestInBox{}, {13, 84})),
        smallBox("the Data Matrix code does not fit into 13 x 84 dots: give it 14 x 14 dots or "
                 "more, better 42 x 42 dots, which scan"));
}

TEST(CodeBoxes, ThatAreTooSmallForBarsNameWhatWouldDo) {
    EXPECT_EQ(
        problemsOf(CodeKind::kCode128, "Az7", inBox(ModuleDots{3}, {100, 40})),
        smallBox("the Code 128 with modules of 3 dots does not fit into 100 x 40 dots: give it "
                 "264 x 24 dots, or modules of 1 dot"));
    EXPECT_EQ(problemsOf(CodeKind::kCode128, "Az7", inBox(ModuleDots{3}, {264, 24})), Lines());
    EXPECT_EQ(
        problemsOf(CodeKind::kCode128, "Az7", inBox(ModuleDots{3}, {264, 24}, Turn::k90)),
        smallBox("the Code 128 with modules of 3 dots does not fit into 264 x 24 dots: give it "
                 "24 x 264 dots"));
    CodeOptions high = inBox(ModuleDots{3}, {264, 24});
    high.barHeight = 25;
    EXPECT_EQ(
        problemsOf(CodeKind::kCode128, "Az7", high),
        smallBox("the Code 128 with modules of 3 dots does not fit into 264 x 24 dots: give it "
                 "264 x 25 dots"));
}

TEST(CodeBoxes, AreTheRestOfTheTicket) {
    EXPECT_EQ(
        problemsOf(CodeKind::kDataMatrix, "123456", {.size = ModuleDots{6}},
                   {.row = 317, .column = 0}),
        smallBox("the Data Matrix code with modules of 6 dots does not fit into 600 x 83 dots: "
                 "give it 84 x 84 dots, or modules of 5 dots"));
    EXPECT_EQ(
        problemsOf(CodeKind::kDataMatrix, "123456", {}, {.row = 400, .column = 0}),
        Lines{"bad-place 0.0: row 400, column 0 has no room on the ticket of 600 x 400 dots"});
}

TEST(CodeBoxes, OfAnySizeDoNoHarm) {
    for (const Size box : {Size{kMax, kMax}, Size{1, kMax}, Size{kMax, 1}}) {
        for (const CodeSize& size :
             {CodeSize(LargestInBox{}), CodeSize(ModuleDots{20000}),
              CodeSize(ModuleMillimetres{1000}), CodeSize(WidthMillimetres{1000})}) {
            for (const CodeKind kind : {CodeKind::kQr, CodeKind::kEan13})
                EXPECT_LE(problemsOf(kind, "400638133393", inBox(size, box)).size(), 1U);
        }
    }
}

TEST(CodeBoxes, OfMoreThanCanBePrintedAreTooLarge) {
    EXPECT_EQ(
        problemsOf(CodeKind::kDataMatrix, "123456", inBox(ModuleDots{2000}, {kMax, kMax})),
        Lines{"too-large 0.0: the Data Matrix code comes to 28000 x 28000 dots, more than can "
              "be printed: make it smaller"});
}

TEST(CodeBoxes, ThatReachBeyondTheTicketAreWarnedOf) {
    const auto job =
        encode(ticket().code(CodeKind::kDataMatrix, "123456", {.row = 0, .column = 560},
                             inBox(ModuleDots{3}, {100, 100})));
    ASSERT_EQ(told(job), Lines());
    EXPECT_EQ(
        told(job->warnings()),
        Lines{"beyond-ticket 0.0 (2): the Data Matrix code of 42 x 42 dots at row 0, column 560 "
              "reaches beyond the ticket of 600 x 400 dots"});
}

TEST(CodeModules, OfLessThanThreeDotsAreWarnedOf) {
    const auto warningsOf = [](std::int32_t dots) {
        const auto job =
            encode(ticket().code(CodeKind::kItf, "12", {}, {.size = ModuleDots{dots}}));
        return job ? told(job->warnings()) : told(job);
    };
    EXPECT_EQ(warningsOf(3), Lines());
    EXPECT_EQ(
        warningsOf(2),
        Lines{"small-module 0.0 (20): the ITF code has modules of 2.0 dots, which may not scan: "
              "make it larger, 3 dots or more"});
}

// ---- Settings -----------------------------------------------------------------------------------

TEST(CodeSettings, OutOfRangeAreRefused) {
    const auto ofSize = [](const CodeSize& size) {
        return problemsOf(CodeKind::kQr, "x", {.size = size});
    };
    const Lines size = badSetting(
        "the QR code's size is out of range: give modules of 1 to 20000 dots, or up to 1000 mm");
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const CodeSize& wrong :
         {CodeSize(ModuleDots{0}), CodeSize(ModuleDots{-1}), CodeSize(ModuleDots{kMax}),
          CodeSize(ModuleMillimetres{0}), CodeSize(ModuleMillimetres{-1}),
          CodeSize(ModuleMillimetres{nan}), CodeSize(WidthMillimetres{nan}),
          CodeSize(WidthMillimetres{1e300})})
        EXPECT_EQ(ofSize(wrong), size);
    EXPECT_EQ(problemsOf(CodeKind::kQr, "x", {.box = Size{0, 5}}),
              badSetting("the QR code's box is empty: give it 1 dot or more in both directions"));
    for (const double reduction : {-0.1, 1.1, nan}) {
        EXPECT_EQ(problemsOf(CodeKind::kItf, "12", {.barReduction = reduction}),
                  badSetting("the ITF code's bar reduction is out of range: give 0 to 1 dot"));
    }
    for (const std::int32_t height : {-1, kMax}) {
        EXPECT_EQ(
            problemsOf(CodeKind::kItf, "12", {.barHeight = height}),
            badSetting("the ITF code's bars have a height out of range: give 1 to 20000 dots, "
                       "or 0 for the usual one"));
    }
}

TEST(CodeSettings, WithoutMeaningAreRefused) {
    const Lines noBars = badSetting(
        "the QR code has no bars: leave out their height and reduction, and the text below");
    EXPECT_EQ(problemsOf(CodeKind::kQr, "x", {.hasText = true}), noBars);
    EXPECT_EQ(problemsOf(CodeKind::kQr, "x", {.barHeight = 1}), noBars);
    EXPECT_EQ(problemsOf(CodeKind::kQr, "x", {.barReduction = 0}), noBars);
    EXPECT_EQ(
        problemsOf(CodeKind::kItf, "12", {.correction = Correction::kHigh}),
        badSetting("the ITF code has no choice of correction, as QR codes have: leave it out"));
    EXPECT_EQ(
        problemsOf(CodeKind::kEan13, "400638133393", {.hasQuietZone = false, .hasText = true}),
        badSetting("the EAN-13 has its first digit in its quiet zone: leave out the one or the "
                   "other"));
}

}  // namespace
}  // namespace tavio::printing
