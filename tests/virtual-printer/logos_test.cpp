// Logos in the printer: stored, drawn, forgotten.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "virtual-printer/test_streams.h"

namespace tavio::virtual_printer::testing {
namespace {

using Lines = std::vector<std::string>;

constexpr TicketSize kSmall{10, 12, 100};
const char* const kEsc = "\x1B";

TEST(Logos, AreDrawnWhereTheyArePlaced) {
    const Stream logo =
        stream("<RE0><DI><RC0,0><3>", kEsc, "<RC1,0><G2>", Stream{0xC0, 0x80}, kEsc);
    EXPECT_EQ(printOne(kSmall, stream(logo, "<SP0,0><LD3><SP4,7><LD3>")),
              "            \n"
              "XX          \n"
              "X           \n"
              "            \n"
              "            \n"
              "       XX   \n"
              "       X    \n"
              "            \n"
              "            \n"
              "            \n");
}

TEST(Logos, PutNothingOnTheTicketWhileTheyAreStored) {
    TestPrinter printer(kSmall);
    printer.print(stream("<3>", kEsc, "<RC0,0><G2>ab", kEsc));
    ASSERT_EQ(printer.tickets().size(), 1U);
    EXPECT_FALSE(printer.tickets()[0].marked);
    EXPECT_EQ(printer.tickets()[0].black, 0U);
    EXPECT_EQ(printer.problems(), Lines{});
}

TEST(Logos, KeepTheOrientationInWhichTheyWereStored) {
    const Stream logo = stream("<PM><4>", kEsc, "<RC5,1><G3>", Stream{0xC0, 0x80, 0x80}, kEsc);
    TestPrinter printer(kSmall);
    printer.print(stream(logo, "<LM><SP2,3><LD4>"));
    ASSERT_EQ(printer.tickets().size(), 1U);
    EXPECT_EQ(printer.tickets()[0].dots,
              "            \n"
              "            \n"
              "            \n"
              "            \n"
              "            \n"
              "    X       \n"
              "    X       \n"
              "    XX      \n"
              "            \n"
              "            \n");
    EXPECT_EQ(printer.tickets()[0].orientation, Orientation::kPortrait);
}

TEST(Logos, ContinueBehindARunAsOnTheTicket) {
    const auto draw = [](const char* orientation, const char* graphics) {
        return printOne(kSmall,
                        stream(orientation, "<4>", kEsc, "<RC5,1>", graphics, kEsc, "<LD4>"));
    };
    EXPECT_EQ(draw("<LM>", "<G1>a<G1>b"), draw("<LM>", "<G2>ab"));
    EXPECT_EQ(draw("<PM>", "<G1>a<G1>b"), draw("<PM>", "<G2>ab"));
    EXPECT_NE(draw("<LM>", "<G2>ab"), draw("<PM>", "<G2>ab"));
}

TEST(Logos, LeaveThePositionOfTheTicketAlone) {
    const Stream one{0x80};
    EXPECT_EQ(printOne(kSmall, stream("<RC3,4><3>", kEsc, "<RC1,1><G1>", one, kEsc, "<G1>", one)),
              printOne(kSmall, stream("<RC3,4><G1>", one)));
}

TEST(Logos, OutliveTicketsAndStreams) {
    TestPrinter printer(kSmall);
    printer.print(stream("<3>", kEsc, "<G1>\x80", kEsc, "<p>"));
    printer.print(stream("<SP1,1><LD3>"));
    ASSERT_EQ(printer.tickets().size(), 2U);
    EXPECT_EQ(printer.tickets()[1].black, 1U);
    EXPECT_EQ(printer.problems(), Lines{});
}

TEST(Logos, AreReplacedByANewOneOfTheirNumber) {
    TestPrinter printer(kSmall);
    printer.print(
        stream("<3>", kEsc, "<G2>\xFF\xFF", kEsc, "<3>", kEsc, "<G1>\x80", kEsc, "<LD3>"));
    EXPECT_EQ(printer.tickets()[0].black, 1U);
}

TEST(Logos, AreForgottenWhenTheMemoryIsCleared) {
    TestPrinter printer(kSmall);
    printer.print(stream("<3>", kEsc, "<G1>\x80", kEsc, kEsc, "c<LD3>"));
    EXPECT_EQ(printer.tickets()[0].black, 0U);
    EXPECT_EQ(printer.problems(), Lines{"12: logo 3 is not stored"});
    EXPECT_EQ(printer.printer().logoMemoryUsed(), 0U);
}

TEST(Logos, ThatWereNeverStoredAreAProblem) {
    TestPrinter printer(kSmall);
    printer.print(stream("<SP0,0><LD-1>"));
    EXPECT_EQ(printer.problems(), Lines{"7: logo -1 is not stored"});
}

TEST(Logos, OfNoGraphicsAreStoredAndDrawNothing) {
    TestPrinter printer(kSmall);
    printer.print(stream("<RE0><DI><RC0,0><3>", kEsc, "<RC8,0>", kEsc, "<SP0,0><LD3>"));
    EXPECT_EQ(printer.problems(), Lines{});
    EXPECT_FALSE(printer.tickets()[0].marked);
}

TEST(Logos, WithoutTheirEndAreNotKept) {
    TestPrinter printer(kSmall);
    printer.print(stream("<3>", kEsc, "<G1>\x80", kEsc));
    printer.print(stream("<3>", kEsc, "<G1>\x80"));
    EXPECT_EQ(printer.problems(), Lines{"0: the stream ends inside logo 3"});
    EXPECT_EQ(printer.printer().logoMemoryUsed(), 0U);
    printer.print(stream("<LD3>"));
    EXPECT_EQ(printer.problems().back(), "0: logo 3 is not stored");
}

TEST(Logos, HoldNothingButGraphics) {
    TestPrinter printer(kSmall);
    printer.print(stream("<3>", kEsc, "a\r\n<p><q><LD3><SP1,1><G1>\x80\r\n", kEsc, "<LD3>"));
    EXPECT_EQ(printer.problems(),
              (Lines{"4: text in logo 3 is ignored", "7: a cut in logo 3 is ignored",
                     "10: an eject in logo 3 is ignored", "13: another logo in logo 3 is ignored",
                     "18: another logo in logo 3 is ignored"}));
    ASSERT_EQ(printer.tickets().size(), 1U);
    EXPECT_EQ(printer.tickets()[0].black, 1U);
}

TEST(Logos, ThatDoNotFitAreNotStored) {
    TestPrinter printer({.size = kSmall, .logoMemory = 1000});
    printer.print(stream("<3>", kEsc, "<G900>", Stream(900, 0xFF), kEsc, "<4>", kEsc, "<G1>\x80",
                         kEsc, "<LD4><LD3>"));
    EXPECT_EQ(printer.problems(), (Lines{"910: logo 3 does not fit into the logo memory",
                                         "926: logo 3 is not stored"}));
    EXPECT_EQ(printer.tickets()[0].black, 1U);
    EXPECT_LE(printer.printer().logoMemoryUsed(), 1000U);
}

TEST(Logos, OnOneTicketAreBounded) {
    TestPrinter printer(kSmall);  // a small ticket takes 64 KiB of logos
    printer.print(stream("<3>", kEsc, "<G40000>", Stream(40000, 0x80), kEsc, "<LD3><LD3><p><LD3>"));
    EXPECT_EQ(printer.problems()[0], "40018: logo 3 is not printed: too many logos on one ticket");
    ASSERT_EQ(printer.tickets().size(), 2U);
    EXPECT_EQ(printer.tickets()[0].dotsOff, 39988U);
    EXPECT_EQ(printer.tickets()[1].dotsOff, 39988U);
}

}  // namespace
}  // namespace tavio::virtual_printer::testing
