#include "tavio/virtual-printer/printer.h"

#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "virtual-printer/test_streams.h"

namespace tavio::virtual_printer::testing {
namespace {

using Lines = std::vector<std::string>;

constexpr TicketSize kSmall{10, 12, 100};

TEST(Printer, DrawsTheGraphicsOfAWholePrint) {
    std::string dots;
    Printer real({*ticketSize(0, 300)}, [&](const FinishedTicket& finished) {
        EXPECT_EQ(finished.ticket.blackCount(), 36U);
        EXPECT_EQ(finished.ticket.dotsOff(), 0U);
        dots = finished.ticket.toText({9, 19, 10, 10});
    });
    real.feed(stream("<P1><LM><RE0><DI><RC10,20><G8>",
                     Stream{0xFF, 0xFF, 0xFF, 0xFF, 0x80, 0x80, 0x80, 0x80}));
    real.finish();
    EXPECT_EQ(dots,
              "          \n"
              " XXXXXXXX \n"
              " XXXX     \n"
              " XXXX     \n"
              " XXXX     \n"
              " XXXX     \n"
              " XXXX     \n"
              " XXXX     \n"
              " XXXX     \n"
              "          \n");
    EXPECT_TRUE(real.problems().empty());
}

TEST(Printer, DrawsLandscapeDownwardsAndToTheRight) {
    EXPECT_EQ(printOne(kSmall, stream("<LM><RC1,2><G3>", Stream{0xC0, 0x01, 0xA0})),
              "            \n"
              "  X X       \n"
              "  X         \n"
              "    X       \n"
              "            \n"
              "            \n"
              "            \n"
              "            \n"
              "   X        \n"
              "            \n");
}

TEST(Printer, DrawsPortraitTowardsSmallerRowsAndToTheRight) {
    EXPECT_EQ(printOne(kSmall, stream("<PM><RC8,2><G3>", Stream{0xC0, 0x01, 0xA0})),
              "            \n"
              "            \n"
              "            \n"
              "            \n"
              "            \n"
              "            \n"
              "  X X       \n"
              "         X  \n"
              "  XX        \n"
              "            \n");
}

TEST(Printer, StartsInTheOrientationOfItsSettings) {
    TestPrinter printer({.size = kSmall, .orientation = Orientation::kPortrait});
    printer.print(stream("<RC8,2><G2>", Stream{0x80, 0x80}));
    printer.print(stream("<LM><RC8,2><G2>", Stream{0x80, 0x80}));
    printer.print(stream("<RC8,2><G2>", Stream{0x80, 0x80}));
    ASSERT_EQ(printer.tickets().size(), 3U);
    EXPECT_EQ(printer.tickets()[0].orientation, Orientation::kPortrait);
    EXPECT_EQ(printer.tickets()[1].orientation, Orientation::kLandscape);
    EXPECT_EQ(printer.tickets()[0].dots, printer.tickets()[2].dots);
    EXPECT_NE(printer.tickets()[0].dots, printer.tickets()[1].dots);
}

TEST(Printer, ContinuesBehindARunOfGraphics) {
    const Stream one{0x80};
    EXPECT_EQ(printOne(kSmall, stream("<RC1,2><G1>", one, "<G1>", one)),
              printOne(kSmall, stream("<RC1,2><G2>", one, one)));
    EXPECT_EQ(printOne(kSmall, stream("<PM><RC7,2><G1>", one, "<G1>", one)),
              printOne(kSmall, stream("<PM><RC7,2><G2>", one, one)));
}

TEST(Printer, StartsATicketInThePicturesTopLeftCorner) {
    const Stream one{0x80};
    EXPECT_EQ(printOne(kSmall, stream("<G1>", one)), printOne(kSmall, stream("<RC0,0><G1>", one)));
    EXPECT_EQ(printOne(kSmall, stream("<PM><G1>", one)),
              printOne(kSmall, stream("<PM><RC9,0><G1>", one)));
    // A position that was given stays, whatever the orientation becomes.
    EXPECT_EQ(printOne(kSmall, stream("<RC0,0><PM><G1>", one)),
              printOne(kSmall, stream("<PM><RC0,0><G1>", one)));
}

TEST(Printer, IgnoresWhatHasNoEffectOnThePicture) {
    const Stream one{0x80};
    EXPECT_EQ(printOne(kSmall, stream("<P7><RE0><DI><G1>", one)),
              printOne(kSmall, stream("<G1>", one)));
}

TEST(Printer, HandsOverATicketForEachCutAndEject) {
    TestPrinter printer(kSmall);
    printer.print(stream("<G1>\x80<p><G1>\x40<q><p>"));
    const std::vector<KeptTicket>& tickets = printer.tickets();
    ASSERT_EQ(tickets.size(), 3U);
    EXPECT_EQ(tickets[0].end, TicketEnd::kCut);
    EXPECT_EQ(tickets[0].number, 1U);
    EXPECT_EQ(tickets[0].black, 1U);
    EXPECT_EQ(tickets[0].beginOffset, 0U);
    EXPECT_EQ(tickets[0].endOffset, 8U);
    EXPECT_TRUE(tickets[0].marked);
    EXPECT_EQ(tickets[1].end, TicketEnd::kEjected);
    EXPECT_EQ(tickets[1].dots.substr(0, 26), "            \nX           \n");
    EXPECT_EQ(tickets[1].beginOffset, 8U);
    EXPECT_EQ(tickets[1].endOffset, 16U);
    EXPECT_EQ(tickets[2].number, 3U);
    EXPECT_EQ(tickets[2].black, 0U);
    EXPECT_FALSE(tickets[2].marked);
}

TEST(Printer, HandsOverTheLastTicketOnlyWhenSomethingIsOnIt) {
    const struct {
        const char* stream;
        std::size_t tickets;
        TicketEnd lastEnd;
    } kCases[] = {
        {"", 1, TicketEnd::kStreamEnded},
        {"<P1><LM><RC3,4>", 1, TicketEnd::kStreamEnded},
        {"a", 1, TicketEnd::kStreamEnded},
        {"a<p>", 1, TicketEnd::kCut},
        {"a<p>\r\n  <RC3,3><G0>", 1, TicketEnd::kCut},
        {"a<p>b", 2, TicketEnd::kStreamEnded},
        {"a<p><G1>\x80", 2, TicketEnd::kStreamEnded},
        {"a<p><G1>\x01", 2, TicketEnd::kStreamEnded},
    };
    for (const auto& one : kCases) {
        TestPrinter printer(kSmall);
        printer.print(stream(one.stream));
        ASSERT_EQ(printer.tickets().size(), one.tickets) << one.stream;
        EXPECT_EQ(printer.tickets().back().end, one.lastEnd) << one.stream;
    }
}

TEST(Printer, StartsEachTicketAfresh) {
    TestPrinter printer(kSmall);
    printer.print(stream("<RC3,4><G1>\x80<p><G1>\x80"));
    ASSERT_EQ(printer.tickets().size(), 2U);
    EXPECT_EQ(printer.tickets()[1].dots, printOne(kSmall, stream("<RC0,0><G1>\x80")));
}

TEST(Printer, KeepsTheOrientationBehindACut) {
    TestPrinter printer(kSmall);
    printer.print(stream("<PM><p><G1>\x80"));
    ASSERT_EQ(printer.tickets().size(), 2U);
    EXPECT_EQ(printer.tickets()[1].orientation, Orientation::kPortrait);
    EXPECT_EQ(printer.tickets()[1].dots, printOne(kSmall, stream("<PM><G1>\x80")));
}

TEST(Printer, CountsDotsBesideTheTicketExactly) {
    TestPrinter printer(kSmall);
    // Rows 6 to 13 of 10; columns 10 to 13 of 12: 4 x 2 dots on the ticket, 32 - 8 beside it.
    printer.print(stream("<RC6,10><G4>", Stream(4, 0xFF), "<p><RC-8,0><G1>", Stream{0xFF}));
    ASSERT_EQ(printer.tickets().size(), 2U);
    EXPECT_EQ(printer.tickets()[0].black, 8U);
    EXPECT_EQ(printer.tickets()[0].dotsOff, 24U);
    EXPECT_EQ(printer.tickets()[1].dotsOff, 8U);
    EXPECT_TRUE(printer.tickets()[1].marked);
    EXPECT_EQ(printer.problems(), (Lines{"19: ticket 1: 24 dots fall outside the ticket",
                                         "32: ticket 2: 8 dots fall outside the ticket"}));
}

TEST(Printer, SurvivesPositionsAtTheEndsOf32Bits) {
    for (const char* place :
         {"<RC2147483647,2147483647>", "<RC-2147483648,-2147483648>", "<RC9999999999,0>"}) {
        for (const char* orientation : {"<LM>", "<PM>"}) {
            TestPrinter printer(kSmall);
            printer.print(stream(orientation, place, "<G3>", Stream(3, 0xFF), "text\r\nmore"));
            ASSERT_EQ(printer.tickets().size(), 1U);
            EXPECT_EQ(printer.tickets()[0].black, 0U);
            EXPECT_GT(printer.tickets()[0].dotsOff, 24U);
        }
    }
}

TEST(Printer, TakesHugeCountsWithoutTheirMemory) {
    TestPrinter printer(kSmall);
    printer.print(stream("<RC0,0><G2147483647>", Stream(100, 0x80)));
    ASSERT_EQ(printer.tickets().size(), 1U);
    EXPECT_EQ(printer.tickets()[0].black, 12U);
    EXPECT_EQ(printer.tickets()[0].dotsOff, 88U);
    EXPECT_EQ(printer.problems(), (Lines{"7: graphics cut short: 100 of 2147483647 bytes",
                                         "120: ticket 1: 88 dots fall outside the ticket"}));
}

TEST(Printer, ReportsUnknownCommands) {
    TestPrinter printer(kSmall);
    printer.print(stream("<LM><XYZ><G1>\x80"));
    EXPECT_EQ(printer.problems(), Lines{"4: unknown command \"<XYZ>\""});
    EXPECT_EQ(printer.tickets()[0].black, 1U);
}

TEST(Printer, KeepsTheFirstThousandProblemsAndCountsTheRest) {
    TestPrinter printer(kSmall);
    for (int i = 0; i < 5000; ++i) printer.feed(stream("<X>"));
    printer.finish();
    EXPECT_EQ(printer.printer().problems().count(), 5000U);
    EXPECT_EQ(printer.printer().problems().kept().size(), ProblemList::kMaxKept);
    EXPECT_EQ(printer.printer().problems().kept().back().offset, 2997U);
    printer.printer().forgetProblems();
    EXPECT_TRUE(printer.printer().problems().empty());
}

TEST(Printer, BeginsANewStreamAfterTheEnd) {
    TestPrinter printer(kSmall);
    printer.print(stream("<PM><RC5,5><G9>abc"));
    printer.print(stream("<G1>\x80<p>"));
    ASSERT_EQ(printer.tickets().size(), 2U);
    EXPECT_EQ(printer.tickets()[1].number, 1U);
    EXPECT_EQ(printer.tickets()[1].beginOffset, 0U);
    EXPECT_EQ(printer.tickets()[1].endOffset, 8U);
    EXPECT_EQ(printer.tickets()[1].dots, printOne(kSmall, stream("<G1>\x80")));
}

TEST(Printer, NeedsNoCallback) {
    Printer printer({kSmall}, nullptr);
    printer.feed(stream("a<p>b"));
    printer.finish();
    EXPECT_TRUE(printer.problems().empty());
}

TEST(Printer, RefusesAnImpossibleTicket) {
    EXPECT_THROW(Printer({TicketSize{0, 0, 0}}, nullptr), std::invalid_argument);
}

TEST(Printer, TakesAMillionCuts) {
    std::uint64_t count = 0;
    Printer printer({*ticketSize(8, 600)}, [&](const FinishedTicket& ticket) {
        ++count;
        EXPECT_EQ(ticket.number, count);
    });
    Stream thousand;
    for (int i = 0; i < 1000; ++i) appendTo(thousand, "<p>");
    for (int i = 0; i < 1000; ++i) printer.feed(thousand);
    printer.finish();
    EXPECT_EQ(count, 1000000U);
}

// Bands of random pictures against the place of each dot, written out.
TEST(Printer, PutsEachDotOfRandomPicturesInItsPlace) {
    constexpr unsigned kSeed = 20240302;
    SCOPED_TRACE(::testing::Message() << "seed " << kSeed);
    std::mt19937 random(kSeed);
    for (int round = 0; round < 2000; ++round) {
        const bool portrait = random() % 2 == 0;
        const auto row = static_cast<std::int32_t>(random() % 60) - 10;
        const auto column = static_cast<std::int32_t>(random() % 60) - 10;
        Stream band(1 + random() % 30);
        for (Byte& byte : band) byte = static_cast<Byte>(random());

        const TicketSize size{40, 45, 100};
        Ticket expected(size);
        for (std::int32_t n = 0; n < static_cast<std::int32_t>(band.size()); ++n) {
            for (std::int32_t bit = 0; bit < 8; ++bit) {
                if ((band[static_cast<std::size_t>(n)] & (1 << bit)) == 0) continue;
                const std::int32_t down = 7 - bit;
                if (portrait) expected.setDot(row - n, column + down);
                if (!portrait) expected.setDot(row + down, column + n);
            }
        }
        TestPrinter printer(size);
        printer.print(stream(portrait ? "<PM>" : "<LM>", "<RC" + std::to_string(row) + ",",
                             std::to_string(column) + "><G" + std::to_string(band.size()) + ">",
                             band));
        ASSERT_EQ(printer.tickets().size(), 1U);
        ASSERT_EQ(printer.tickets()[0].dots, expected.toText()) << "round " << round;
        ASSERT_EQ(printer.tickets()[0].dotsOff, expected.dotsOff()) << "round " << round;
    }
}

}  // namespace
}  // namespace tavio::virtual_printer::testing
