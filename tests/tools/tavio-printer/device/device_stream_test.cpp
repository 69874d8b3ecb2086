// The stream of a connection, without physics and faults.
#include <cmath>
#include <stdexcept>

#include <gtest/gtest.h>

#include "tools/tavio-printer/device/test_device.h"

namespace tavio::virtual_printer::testing {
namespace {

using Lines = std::vector<std::string>;

TEST(DeviceStream, EachTicketHasItsOwnBytes) {
    TestDevice test;
    test.print("<RC1,2>" + graphics(2) + "<p>" + graphics(1) + "<q>x");
    ASSERT_EQ(test.tickets.size(), 3U);
    EXPECT_EQ(test.streams(), (Lines{"<RC1,2><G2>\xFF\xFF<p>", "<G1>\xFF<q>", "x"}));
    EXPECT_EQ(test.tickets[0].end, TicketEnd::kCut);
    EXPECT_EQ(test.tickets[1].end, TicketEnd::kEjected);
    EXPECT_EQ(test.tickets[2].end, TicketEnd::kStreamEnded);
    EXPECT_EQ(test.tickets[0].ticket.blackCount(), 16U);
    EXPECT_TRUE(test.tickets[0].ticket.isBlack(1, 2));
    EXPECT_EQ(test.tickets[1].ticket.blackCount(), 8U);
    EXPECT_EQ(test.tickets[1].beginOffset, 16U);
    EXPECT_EQ(test.tickets[1].byteCount, 8U);
    EXPECT_EQ(test.tickets[2].beginOffset, 24U);
    EXPECT_EQ(test.tickets[2].number, 3U);
    EXPECT_EQ(test.tickets[2].connection, 1U);
    for (const DeviceTicket& ticket : test.tickets) EXPECT_TRUE(ticket.problems.empty());
}

TEST(DeviceStream, ACutWithinGraphicsAndLogosIsNone) {
    TestDevice test;
    test.print("<G6><p><p><p>");
    EXPECT_EQ(test.streams(), (Lines{"<G6><p><p><p>"}));
    test.tickets.clear();
    test.print("<7>\x1B<p>\x1B<p>");
    EXPECT_EQ(test.streams(), (Lines{"<7>\x1B<p>\x1B<p>"}));
    EXPECT_EQ(test.problemsOf(0), (Lines{"4: a cut in logo 7 is ignored"}));
}

TEST(DeviceStream, ATicketComesOutWithItsLastByteAndNotBefore) {
    TestDevice test;
    test.connect();
    test.send(graphics(1) + "<p");
    EXPECT_TRUE(test.tickets.empty());
    test.send(">");
    EXPECT_EQ(test.tickets.size(), 1U);
    EXPECT_EQ(test.device.state().tickets, 1U);
}

TEST(DeviceStream, AMarkedTicketComesOutAtTheEndOfTheStream) {
    TestDevice test;
    test.connect();
    test.send(graphics(3));
    EXPECT_TRUE(test.tickets.empty());
    EXPECT_FALSE(test.device.isDone());
    test.end();
    EXPECT_TRUE(test.device.isDone());
    ASSERT_EQ(test.tickets.size(), 1U);
    EXPECT_TRUE(test.tickets[0].marked);
    test.disconnect();
    EXPECT_EQ(test.tickets.size(), 1U);
}

TEST(DeviceStream, ALostConnectionIsTheEndOfTheStreamToo) {
    TestDevice test;
    test.connect();
    test.send(graphics(3));
    EXPECT_FALSE(test.device.isFree());
    test.disconnect();
    EXPECT_EQ(test.tickets.size(), 1U);
    EXPECT_TRUE(test.device.isFree());
}

TEST(DeviceStream, AClientThatSendsNothingGetsNoTicket) {
    TestDevice test;
    test.print("");
    test.connect();
    test.disconnect();
    EXPECT_TRUE(test.tickets.empty());
    EXPECT_EQ(test.device.state().tickets, 0U);
}

TEST(DeviceStream, BytesWithoutATicketBringABlankOne) {
    TestDevice test;
    test.print("<RC5,5>");
    ASSERT_EQ(test.tickets.size(), 1U);
    EXPECT_FALSE(test.tickets[0].marked);
    EXPECT_EQ(test.streams(), (Lines{"<RC5,5>"}));
}

TEST(DeviceStream, WhatFollowsTheLastTicketBringsOneOnlyWithAMarkOrAProblem) {
    TestDevice test;
    test.print("<p>\r\n");
    EXPECT_EQ(test.streams(), (Lines{"<p>"}));
    test.tickets.clear();

    test.print("<p><RC1,");
    ASSERT_EQ(test.tickets.size(), 2U);
    EXPECT_EQ(test.streams()[1], "<RC1,");
    EXPECT_EQ(test.problemsOf(1), (Lines{"0: the stream ends inside a command: \"<RC1,\""}));
    EXPECT_EQ(test.tickets[1].number, 2U);
    EXPECT_EQ(test.tickets[1].beginOffset, 3U);
    EXPECT_EQ(test.tickets[1].byteCount, 5U);
    EXPECT_EQ(test.tickets[1].ticket.blackCount(), 0U);
    EXPECT_EQ(test.tickets[1].end, TicketEnd::kStreamEnded);
    EXPECT_EQ(test.device.state().tickets, 3U);
}

TEST(DeviceStream, ProblemsAreCountedFromTheFirstByteOfTheirTicket) {
    TestDevice test;
    test.print("<X><p>ab<Y><p><G5>ab");
    ASSERT_EQ(test.tickets.size(), 3U);
    EXPECT_EQ(test.problemsOf(0), (Lines{"0: unknown command \"<X>\""}));
    EXPECT_EQ(test.problemsOf(1), (Lines{"2: unknown command \"<Y>\""}));
    EXPECT_EQ(test.problemsOf(2), (Lines{"0: graphics cut short: 2 of 5 bytes"}));
}

TEST(DeviceStream, DotsBesideTheTicketAreAProblemOfTheirTicket) {
    TestDevice test;
    test.print("<p><RC0,99>" + graphics(2) + "<p>");
    ASSERT_EQ(test.tickets.size(), 2U);
    EXPECT_EQ(test.problemsOf(1), (Lines{"17: ticket 2: 8 dots fall outside the ticket"}));
}

TEST(DeviceStream, AHalfCommandIsForgottenWithItsConnection) {
    TestDevice test;
    test.connect();
    test.send("<p><p");
    test.disconnect();
    test.print(graphics(1) + "<p>");
    ASSERT_EQ(test.tickets.size(), 3U);
    EXPECT_EQ(test.problemsOf(1), (Lines{"0: the stream ends inside a command: \"<p\""}));
    EXPECT_EQ(test.streams()[2], "<G1>\xFF<p>");
    EXPECT_TRUE(test.tickets[2].problems.empty());
    EXPECT_EQ(test.tickets[2].number, 1U);
    EXPECT_EQ(test.tickets[2].connection, 2U);
    EXPECT_EQ(test.tickets[2].beginOffset, 0U);
}

TEST(DeviceStream, WhatWasLeftWithoutATicketIsNotOfTheNextConnection) {
    TestDevice test;
    test.print("<p>\r\n\r\n");
    test.print("<p>");
    EXPECT_EQ(test.streams(), (Lines{"<p>", "<p>"}));
    EXPECT_EQ(test.tickets[1].byteCount, 3U);
}

TEST(DeviceStream, AnUnfinishedLogoIsAProblemAndIsNotKept) {
    TestDevice test;
    test.print("<7>\x1B" + graphics(2));
    EXPECT_EQ(test.problemsOf(0), (Lines{"0: the stream ends inside logo 7"}));
    EXPECT_EQ(test.device.state().logoBytes, 0U);
}

TEST(DeviceStream, LogosOutliveConnectionsUntilTheyAreForgotten) {
    TestDevice test;
    test.print("<7>\x1B" + graphics(2) + "\x1B<p>");
    EXPECT_GT(test.device.state().logoBytes, 0U);
    test.print("<LD7><p>");
    EXPECT_EQ(test.tickets.at(1).ticket.blackCount(), 16U);
    test.print(
        "\x1B"
        "c<LD7><p>");
    EXPECT_EQ(test.tickets.at(2).ticket.blackCount(), 0U);
    EXPECT_EQ(test.problemsOf(2), (Lines{"2: logo 7 is not stored"}));
    EXPECT_EQ(test.device.state().logoBytes, 0U);
}

TEST(DeviceStream, ALogoThatDoesNotFitIsAProblem) {
    DeviceSettings settings = smallDevice();
    settings.printer.logoMemory = 300;
    TestDevice test(settings);
    test.print("<1>\x1B" + graphics(10) + "\x1B<2>\x1B" + graphics(200) + "\x1B<LD1><p>");
    EXPECT_EQ(test.tickets.at(0).ticket.blackCount(), 80U);
    ASSERT_EQ(test.tickets[0].problems.count(), 1U);
    EXPECT_EQ(test.tickets[0].problems.kept()[0].text, "logo 2 does not fit into the logo memory");
}

TEST(DeviceStream, EveryStreamBeginsInThePrintersOrientation) {
    DeviceSettings settings = smallDevice();
    settings.printer.orientation = Orientation::kPortrait;
    TestDevice test(settings);
    test.print("<LM><p>");
    test.print(graphics(1) + "<p>");
    EXPECT_EQ(test.tickets.at(0).orientation, Orientation::kLandscape);
    EXPECT_EQ(test.tickets.at(1).orientation, Orientation::kPortrait);
}

TEST(DeviceStream, ProblemsWithoutEndAreCounted) {
    TestDevice test;
    std::string broken;
    for (int i = 0; i < 5000; ++i) broken += "<X>";
    test.print(broken + "<p><Y><p>");
    ASSERT_EQ(test.tickets.size(), 2U);
    EXPECT_EQ(test.tickets[0].problems.count(), 5000U);
    EXPECT_EQ(test.tickets[0].problems.kept().size(), ProblemList::kMaxKept);
    EXPECT_EQ(test.tickets[0].problems.kept()[999].offset, 2997U);
    EXPECT_EQ(test.problemsOf(1), (Lines{"0: unknown command \"<Y>\""}));
}

// ESC without a meaning brings no ">", so that many problems come in one piece.
TEST(DeviceStream, ProblemsInOnePieceAreCountedToo) {
    TestDevice test;
    test.print(std::string(4000, '\x1B') + "x<p>");
    EXPECT_EQ(test.tickets.at(0).problems.count(), 4000U);
}

TEST(DeviceStream, OfATicketWithoutEndOnlySoManyBytesAreKept) {
    TestDevice test;
    test.connect();
    const std::string row = "<RC0,0>" + graphics(10000, 0);
    std::uint64_t sent = 0;
    while (sent <= kMaxTicketBytes + 3 * row.size()) sent += test.send(row);
    test.send("<p>" + graphics(1) + "<p>");
    ASSERT_EQ(test.tickets.size(), 2U);
    EXPECT_EQ(test.tickets[0].byteCount, sent + 3);
    EXPECT_EQ(test.tickets[0].bytes.size(), kMaxTicketBytes);
    EXPECT_LE(test.tickets[0].bytes.capacity(), kMaxTicketBytes);
    EXPECT_EQ(test.tickets[1].beginOffset, sent + 3);
    EXPECT_EQ(test.streams()[1], "<G1>\xFF<p>");
}

TEST(DeviceStream, SecondClientsAreNotLetIn) {
    TestDevice test;
    test.connect();
    test.send("<RC1,1>x");
    test.connect();
    test.send("<p>");
    EXPECT_EQ(test.streams(), (Lines{"<RC1,1>x<p>"}));
    EXPECT_EQ(test.tickets[0].connection, 1U);
}

TEST(DeviceStream, WithoutAClientNothingIsTaken) {
    TestDevice test;
    EXPECT_EQ(test.room(), 0U);
    test.device.receive(bytesOf("<p>"), test.now);
    test.connect();
    test.end();
    EXPECT_EQ(test.room(), 0U);
    test.device.receive(bytesOf("<p>"), test.now);
    EXPECT_TRUE(test.tickets.empty());
    EXPECT_TRUE(test.device.isDone());
}

TEST(DeviceStream, SettingsThatNoPrinterHasAreRefused) {
    const auto refuses = [](const auto& change) {
        DeviceSettings settings = smallDevice();
        change(settings);
        EXPECT_THROW(Device(settings, nullptr), std::invalid_argument);
    };
    refuses([](DeviceSettings& s) { s.printer.size.rows = 0; });
    refuses([](DeviceSettings& s) { s.printer.size.dpi = 0; });
    refuses([](DeviceSettings& s) { s.physics.receiveBuffer = 0; });
    refuses([](DeviceSettings& s) { s.physics.receiveBuffer = kMaxReceiveBuffer + 1; });
    refuses([](DeviceSettings& s) { s.physics.bytesPerSecond = -1; });
    refuses([](DeviceSettings& s) { s.physics.bytesPerSecond = 0.0001; });
    refuses([](DeviceSettings& s) { s.physics.bytesPerSecond = 1.1e8; });
    refuses([](DeviceSettings& s) { s.physics.bytesPerSecond = std::nan(""); });
    refuses([](DeviceSettings& s) { s.physics.millimetresPerSecond = -1; });
    refuses([](DeviceSettings& s) { s.physics.millimetresPerSecond = INFINITY; });
    refuses([](DeviceSettings& s) { s.reply.text.assign(kMaxReplyTextBytes + 1, 'x'); });
    refuses([](DeviceSettings& s) { s.reply.delay = milliseconds(-1); });
    refuses([](DeviceSettings& s) { s.reply.delay = kMaxReplyDelay + milliseconds(1); });
}

}  // namespace
}  // namespace tavio::virtual_printer::testing
