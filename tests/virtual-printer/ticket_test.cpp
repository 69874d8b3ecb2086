#include "tavio/virtual-printer/ticket.h"

#include <algorithm>
#include <cctype>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TavioIpadSDK/settings/stock_table.h"

namespace tavio::virtual_printer {
namespace {

TEST(TicketSize, IsInchesTimesResolutionRounded) {
    const std::vector<TicketSize> kAt300{{600, 1650, 300}, {975, 600, 300},  {639, 1011, 300},
                                         {975, 2400, 300}, {975, 1800, 300}, {1200, 1800, 300},
                                         {300, 3300, 300}, {398, 3300, 300}, {2550, 3300, 300}};
    ASSERT_EQ(kAt300.size(), kTicketStocks.size());
    for (std::int32_t stock = 0; stock < std::ssize(kTicketStocks); ++stock) {
        EXPECT_EQ(ticketSize(stock, 300), kAt300[static_cast<std::size_t>(stock)]) << stock;
    }
    EXPECT_EQ(ticketSize(2, 200), (TicketSize{426, 674, 200}));
    EXPECT_EQ(ticketSize(8, 600), (TicketSize{5100, 6600, 600}));
}

TEST(TicketSize, IsNoneForUnknownStocksAndResolutions) {
    EXPECT_EQ(ticketSize(-1, 300), std::nullopt);
    EXPECT_EQ(ticketSize(static_cast<std::int32_t>(kTicketStocks.size()), 300), std::nullopt);
    EXPECT_EQ(ticketSize(0, 0), std::nullopt);
    EXPECT_EQ(ticketSize(0, -300), std::nullopt);
    EXPECT_EQ(ticketSize(0, kMaxDpi + 1), std::nullopt);
    EXPECT_TRUE(ticketSize(8, kMaxDpi).has_value());
    EXPECT_NO_THROW(Ticket(*ticketSize(8, kMaxDpi)));
    EXPECT_EQ(ticketSize(6, 1), (TicketSize{1, 11, 1}));
}

// The printer's list of stocks and the library's are written apart; they must agree.
TEST(TicketStocks, AreThoseOfTheLibrary) {
    ASSERT_EQ(kTicketStocks.size(), settings::kStocks.size());
    for (std::size_t i = 0; i < kTicketStocks.size(); ++i) {
        std::string name = settings::kStocks[i].name;
        for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        EXPECT_EQ(kTicketStocks[i].name, name);
        EXPECT_EQ(kTicketStocks[i].width, settings::kStocks[i].landscape.width) << i;
        EXPECT_EQ(kTicketStocks[i].height, settings::kStocks[i].landscape.height) << i;
    }
}

TEST(Ticket, IsBlankAtFirst) {
    const Ticket ticket({2, 3, 300});
    EXPECT_EQ(ticket.toText(), "   \n   \n");
    EXPECT_EQ(ticket.blackCount(), 0U);
    EXPECT_EQ(ticket.dotsOff(), 0U);
}

TEST(Ticket, KeepsDotsAndCountsEachOnce) {
    Ticket ticket({2, 10, 300});
    ticket.setDot(0, 0);
    ticket.setDot(1, 9);
    ticket.setDot(1, 9);
    EXPECT_EQ(ticket.toText(), "X         \n         X\n");
    EXPECT_EQ(ticket.blackCount(), 2U);
    EXPECT_TRUE(ticket.isBlack(1, 9));
    EXPECT_FALSE(ticket.isBlack(1, 8));
    EXPECT_EQ(std::vector<Byte>(ticket.row(0).begin(), ticket.row(0).end()),
              (std::vector<Byte>{0x80, 0x00}));
    EXPECT_EQ(std::vector<Byte>(ticket.row(1).begin(), ticket.row(1).end()),
              (std::vector<Byte>{0x00, 0x40}));
}

TEST(Ticket, CountsDotsOutside) {
    Ticket ticket({2, 3, 300});
    constexpr std::int64_t kFar = std::int64_t{1} << 40;
    for (const std::int64_t far : {std::int64_t{-1}, std::int64_t{3}, kFar, -kFar}) {
        ticket.setDot(far, 0);
        ticket.setDot(0, far);
        EXPECT_FALSE(ticket.isBlack(far, 0));
        EXPECT_FALSE(ticket.isBlack(0, far));
    }
    ticket.setDot(2, 0);
    EXPECT_EQ(ticket.dotsOff(), 9U);
    EXPECT_EQ(ticket.blackCount(), 0U);
    EXPECT_EQ(ticket.toText(), "   \n   \n");
}

TEST(Ticket, ShowsARegionWithBlanksOutside) {
    Ticket ticket({2, 2, 300});
    ticket.setDot(0, 0);
    ticket.setDot(1, 1);
    EXPECT_EQ(ticket.toText({-1, 0, 3, 3}), "   \nX  \n X \n");
    EXPECT_EQ(ticket.toText({0, 0, 0, 0}), "");
}

TEST(Ticket, IsBlankAgainWhenCleared) {
    Ticket ticket({2, 2, 300});
    ticket.setDot(0, 0);
    ticket.setDot(5, 5);
    ticket.clear();
    EXPECT_EQ(ticket.toText(), "  \n  \n");
    EXPECT_EQ(ticket.blackCount(), 0U);
    EXPECT_EQ(ticket.dotsOff(), 0U);
}

TEST(Ticket, TurnsUpright) {
    Ticket ticket({3, 2, 300});
    ticket.setDot(2, 0);  // top left of a portrait picture
    ticket.setDot(1, 0);  // the next of its columns
    ticket.setDot(2, 1);  // the next of its rows
    const Ticket upright = ticket.turnedUpright();
    EXPECT_EQ(upright.size(), (TicketSize{2, 3, 300}));
    EXPECT_EQ(upright.toText(),
              "XX \n"
              "X  \n");
    EXPECT_EQ(upright.blackCount(), 3U);
}

TEST(Ticket, RefusesImpossibleSizes) {
    for (const TicketSize size :
         {TicketSize{0, 1, 300}, TicketSize{1, 0, 300}, TicketSize{-1, 5, 300}, TicketSize{1, 1, 0},
          TicketSize{kMaxTicketDots + 1, 1, 300}, TicketSize{1, 1, kMaxDpi + 1}}) {
        EXPECT_THROW(Ticket{size}, std::invalid_argument);
    }
}

TEST(Ticket, AgreesWithAPlainTableOfDots) {
    constexpr unsigned kSeed = 20240301;
    SCOPED_TRACE(::testing::Message() << "seed " << kSeed);
    std::mt19937 random(kSeed);
    for (int round = 0; round < 200; ++round) {
        const auto rows = static_cast<std::int32_t>(1 + random() % 20);
        const auto columns = static_cast<std::int32_t>(1 + random() % 40);
        Ticket ticket({rows, columns, 200});
        std::vector<std::string> table(static_cast<std::size_t>(rows),
                                       std::string(static_cast<std::size_t>(columns), ' '));
        std::uint64_t off = 0;
        for (int dot = 0; dot < 100; ++dot) {
            const auto row = static_cast<std::int32_t>(random() % 24) - 2;
            const auto column = static_cast<std::int32_t>(random() % 44) - 2;
            ticket.setDot(row, column);
            const bool inside = row >= 0 && row < rows && column >= 0 && column < columns;
            if (inside) {
                table[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)] = 'X';
            } else {
                ++off;
            }
        }
        std::string expected;
        for (const std::string& line : table) expected += line + "\n";
        ASSERT_EQ(ticket.toText(), expected);
        ASSERT_EQ(ticket.dotsOff(), off);
        ASSERT_EQ(ticket.blackCount(),
                  static_cast<std::uint64_t>(std::count(expected.begin(), expected.end(), 'X')));
    }
}

}  // namespace
}  // namespace tavio::virtual_printer
