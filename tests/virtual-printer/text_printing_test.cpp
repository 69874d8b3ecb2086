// Text between commands, as the printer draws it.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tavio/virtual-printer/font.h"
#include "virtual-printer/test_streams.h"

namespace tavio::virtual_printer::testing {
namespace {

using Lines = std::vector<std::string>;

TEST(TextPrinting, DrawsThePlainFace) {
    EXPECT_EQ(printOne({9, 14, 100}, stream("<RC1,1>Hi")),
              "              \n"
              " X   X   X    \n"
              " X   X        \n"
              " X   X  XX    \n"
              " XXXXX   X    \n"
              " X   X   X    \n"
              " X   X   X    \n"
              " X   X  XXX   \n"
              "              \n");
}

TEST(TextPrinting, TurnsWithThePicture) {
    EXPECT_EQ(printOne({8, 9, 100}, stream("<PM><RC6,1>L")),
              "         \n"
              "         \n"
              "       X \n"
              "       X \n"
              "       X \n"
              "       X \n"
              " XXXXXXX \n"
              "         \n");
}

TEST(TextPrinting, GrowsWithTheResolution) {
    const struct {
        std::int32_t dpi;
        std::uint64_t scale;
    } kCases[] = {{50, 1}, {100, 1}, {200, 2}, {300, 3}, {600, 6}};
    for (const auto& one : kCases) {
        TestPrinter printer(TicketSize{60, 60, one.dpi});
        printer.print(stream("I"));
        EXPECT_EQ(printer.tickets()[0].black, 11 * one.scale * one.scale) << one.dpi;
        EXPECT_EQ(printer.tickets()[0].dotsOff, 0U);
    }
}

TEST(TextPrinting, StartsNewLinesBelowTheFirst) {
    const TicketSize size{40, 40, 100};
    const std::string expected =
        printOne(size, stream("<RC2,3>ab<RC", std::to_string(2 + kLineAdvance), ",3>c<RC",
                              std::to_string(2 + 2 * kLineAdvance), ",3>d"));
    EXPECT_EQ(printOne(size, stream("<RC2,3>ab\nc\nd")), expected);
    EXPECT_EQ(printOne(size, stream("<RC2,3>ab\rc\rd")), expected);
    EXPECT_EQ(printOne(size, stream("<RC2,3>ab\r\nc\r\nd")), expected);
    EXPECT_EQ(printOne(size, stream("<RC2,3>ab\r\nc\n\rd")),
              printOne(size, stream("<RC2,3>ab\r\nc\r\n\r\nd")));
}

TEST(TextPrinting, StartsNewLinesInPortraitTowardsLargerColumns) {
    const TicketSize size{40, 40, 100};
    EXPECT_EQ(
        printOne(size, stream("<PM><RC30,3>ab\nc")),
        printOne(size, stream("<PM><RC30,3>ab<RC30,", std::to_string(3 + kLineAdvance), ">c")));
}

TEST(TextPrinting, ContinuesBehindCommandsThatDoNotMoveIt) {
    const TicketSize size{40, 60, 100};
    EXPECT_EQ(printOne(size, stream("<RC2,3>ab<DI>cd\nef")),
              printOne(size, stream("<RC2,3>abcd\nef")));
}

TEST(TextPrinting, ContinuesOverLongRuns) {
    const TicketSize size{20, 3000, 100};
    TestPrinter printer(size);
    printer.print(stream(std::string(400, 'I')));
    EXPECT_EQ(printer.tickets()[0].black, 400U * 11);
}

TEST(TextPrinting, LeavesThePositionOfGraphicsAlone) {
    const TicketSize size{40, 60, 100};
    EXPECT_EQ(printOne(size, stream("<RC2,3>\n<G1>\x80")),
              printOne(size, stream("<RC2,3><G1>\x80")));
    EXPECT_EQ(printOne(size, stream("<RC20,3>l\nl<RC2,3><G1>\x80")),
              printOne(size, stream("<RC2,3><G1>\x80<RC20,3>l\nl")));
}

TEST(TextPrinting, ContinuesBehindGraphics) {
    const TicketSize size{40, 60, 100};
    EXPECT_EQ(printOne(size, stream("<RC2,3><G2>\x80\x80I")),
              printOne(size, stream("<RC2,3><G2>\x80\x80<RC2,5>I")));
}

TEST(TextPrinting, DrawsABoxForWhatTheFaceDoesNotHave) {
    const TicketSize size{9, 40, 100};
    const std::string one = printOne(size, stream("\xC3\xA9"));
    EXPECT_EQ(one.substr(0, 6), "XXXXX ");
    EXPECT_EQ(printOne(size, stream("\xF0\x9F\x98\x80")), one);
    EXPECT_EQ(printOne(size, stream("\xE9")), one);
    EXPECT_EQ(printOne(size, stream("\xE9\xE9")), printOne(size, stream("\xC3\xA9\xE2\x82\xAC")));
}

TEST(TextPrinting, StartsInTheTopLeftCornerInBothOrientations) {
    TestPrinter printer(TicketSize{20, 30, 100});
    printer.print(stream("F<p><PM>F"));
    ASSERT_EQ(printer.tickets().size(), 2U);
    EXPECT_EQ(printer.tickets()[1].dotsOff, 0U);
    EXPECT_EQ(printer.tickets()[1].dots, printOne({20, 30, 100}, stream("<PM><RC19,0>F")));
}

TEST(TextPrinting, CountsTextBesideTheTicket) {
    TestPrinter printer(TicketSize{9, 5, 100});
    printer.print(stream("II"));
    EXPECT_EQ(printer.problems(), Lines{"2: ticket 1: 11 dots fall outside the ticket"});
}

}  // namespace
}  // namespace tavio::virtual_printer::testing
