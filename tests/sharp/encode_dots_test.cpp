#include "TavioIpadSDK/sharp/encode_dots.h"

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "TavioIpadSDK/sharp/band_writer.h"
#include "support/bitmaps.h"
#include "support/instruction_sets.h"
#include "support/random_dots.h"
#include "tavio/virtual-printer/printer.h"

namespace tavio::sharp {
namespace {

using test::between;
using test::chance;
using virtual_printer::Ticket;
using virtual_printer::TicketSize;

std::string openingOf(const DotsPlace& place) {
    return place.isLandscape ? "<P1><LM><RE0><DI>" : "<P1><PM><RE0><DI>";
}

Bytes pictureBytes(const Dots& dots, const DotsPlace& place) {
    Bytes bytes;
    appendPicture(dots, place, openingOf(place), bytes);
    return bytes;
}

std::string stretchesOf(const Dots& dots, const DotsPlace& place) {
    Bytes bytes;
    appendPicture(dots, place, "", bytes);
    return test::readable(bytes);
}

void drawOn(Ticket& ticket, const Dots& dots, const DotsPlace& place) {
    for (std::int32_t y = 0; y < dots.height; ++y) {
        for (std::int32_t x = 0; x < dots.width; ++x) {
            if (!dots.isBlack(x, y)) continue;
            if (place.isLandscape) {
                ticket.setDot(place.row + y, place.column + x);
            } else {
                ticket.setDot(place.row - x, place.column + y);
            }
        }
    }
}

bool areEqual(const Ticket& a, const Ticket& b) {
    for (std::int32_t row = 0; row < a.size().rows; ++row)
        if (!std::ranges::equal(a.row(row), b.row(row))) return false;
    return a.blackCount() == b.blackCount();
}

// A printer that compares each ticket with the one that the test has drawn.
class ComparingPrinter {
  public:
    explicit ComparingPrinter(const TicketSize& size)
        : expected(size), printer_({.size = size}, [this](const auto& t) { compare(t); }) {}

    // Prints the bytes, then cuts. False if a dot differs or lies outside, or if there was a problem.
    bool prints(const Bytes& bytes) {
        isEqual_ = false;
        printer_.feed(bytes);
        printer_.feed(test::bytesOf("<p>"));
        expected.clear();
        return isEqual_ && printer_.problems().count() == 0;
    }

    Ticket expected;

  private:
    void compare(const virtual_printer::FinishedTicket& finished) {
        isEqual_ = finished.ticket.dotsOff() == 0 && areEqual(finished.ticket, expected);
    }

    bool isEqual_ = false;
    virtual_printer::Printer printer_;
};

// Anywhere on the ticket, often at its edges.
DotsPlace randomPlace(test::Random& random, const Dots& dots, const TicketSize& size) {
    const bool isLandscape = chance(random, 50);
    const std::int32_t rows = isLandscape ? dots.height : dots.width;
    const std::int32_t columns = isLandscape ? dots.width : dots.height;
    const auto within = [&random](std::int32_t room) {
        if (chance(random, 30)) return chance(random, 50) ? 0 : room;
        return between(random, 0, room);
    };
    const std::int32_t top = within(size.rows - rows);
    const std::int32_t left = within(size.columns - columns);
    return {isLandscape, isLandscape ? top : top + dots.width - 1, left};
}

constexpr unsigned kShards = 20;
constexpr unsigned kPicturesPerShard = TAVIO_RANDOM_PICTURES / kShards;

class EveryDot : public testing::TestWithParam<unsigned> {};

TEST_P(EveryDot, OfARandomPictureIsPrintedAtItsPlace) {
    const TicketSize size{150, 170, 300};
    ComparingPrinter printer(size);
    for (unsigned i = 0; i < kPicturesPerShard; ++i) {
        const unsigned seed = GetParam() * kPicturesPerShard + i;
        test::Random random(seed);
        const int maxSide = chance(random, 10) ? 150 : 80;
        const Dots dots =
            test::randomDots(random, between(random, 1, maxSide), between(random, 1, maxSide));
        const DotsPlace place = randomPlace(random, dots, size);
        drawOn(printer.expected, dots, place);
        ASSERT_TRUE(printer.prints(pictureBytes(dots, place)))
            << "seed " << seed << ", row " << place.row << ", column " << place.column
            << (place.isLandscape ? ", landscape" : ", portrait") << "\n"
            << testing::PrintToString(test::rowsOf(dots));
    }
}

INSTANTIATE_TEST_SUITE_P(Shard, EveryDot, testing::Range(0U, kShards));

TEST(EncodeDots, PrintLargePicturesWithEachInstructionSet) {
    const TicketSize size{900, 1000, 300};
    test::withEachInstructionSet([&] {
        ComparingPrinter printer(size);
        for (unsigned seed = 0; seed < 12; ++seed) {
            test::Random random(seed);
            const Dots dots =
                test::randomDots(random, between(random, 200, 900), between(random, 200, 900));
            const DotsPlace place = randomPlace(random, dots, size);
            drawOn(printer.expected, dots, place);
            ASSERT_TRUE(printer.prints(pictureBytes(dots, place))) << "seed " << seed;
        }
    });
}

TEST(EncodeDots, OfABlackSquareAreOneStretch) {
    const Dots dots = test::dotsOf(test::allBlack(8, 8));
    EXPECT_EQ(test::readable(pictureBytes(dots, {true, 10, 20})),
              "<P1><LM><RE0><DI><RC10,20><G8>{FF}{FF}{FF}{FF}{FF}{FF}{FF}{FF}");
}

// docs/stream.md
TEST(EncodeDots, OfTheDocumentedExample) {
    const Dots dots = test::dotsWhere(26, 12, [](std::int32_t x, std::int32_t y) {
        return (x < 3 && y < 10) || (x >= 24 && y >= 4);
    });
    EXPECT_EQ(test::readable(pictureBytes(dots, {true, 10, 20})),
              "<P1><LM><RE0><DI><RC10,20><G3>{FF}{FF}{FF}<RC14,20><G3>{0C}{0C}{0C}"
              "<RC14,44><G2>{FF}{FF}");
}

// Eleven blank columns and a digit of the count, or twelve bytes of commands.
TEST(EncodeDots, LeaveOutBlankRunsThatAreLongerThanTheCommandsOfAStretch) {
    const auto apart = [](std::size_t columns) {
        return test::dotsOf({"X" + std::string(columns, ' ') + "X"});
    };
    EXPECT_EQ(stretchesOf(apart(11), {true, 0, 0}),
              "<RC0,0><G13>{80}" + test::readable(std::string(11, '\0')) + "{80}");
    EXPECT_EQ(stretchesOf(apart(12), {true, 0, 0}), "<RC0,0><G1>{80}<RC0,13><G1>{80}");
}

TEST(EncodeDots, OfABlankPictureAreTheOpening) {
    EXPECT_EQ(test::readable(pictureBytes(test::dotsOf({"   ", "   "}), {true, 5, 5})),
              "<P1><LM><RE0><DI>");
    EXPECT_EQ(test::readable(pictureBytes(Dots{}, {true, 5, 5})), "<P1><LM><RE0><DI>");
}

// The dots of the last band are the lowest of its bytes: the stretch does not leave the picture.
TEST(EncodeDots, StayInThePicture) {
    test::Rows rows(9, "  ");
    rows[7] = rows[8] = "X ";
    EXPECT_EQ(stretchesOf(test::dotsOf(rows), {true, 0, 0}), "<RC1,0><G1>{03}");
    EXPECT_EQ(stretchesOf(test::dotsOf(rows), {false, 1, 0}), "<RC1,1><G1>{03}");
}

TEST(EncodeDots, StayAmongThePlacesThatCommandsName) {
    const Dots dot = test::dotsOf({"X"});
    EXPECT_EQ(stretchesOf(dot, {true, 99'992, 99'999}), "<RC99992,99999><G1>{80}");
    EXPECT_EQ(stretchesOf(dot, {true, 99'999, 0}), "<RC99992,0><G1>{01}");
    EXPECT_EQ(stretchesOf(dot, {false, 99'999, 99'998}), "<RC99999,99992><G1>{02}");
}

// All pictures of up to 9 dots, and all columns of 9.
TEST(EncodeDots, PrintEverySmallPicture) {
    const TicketSize size{12, 12, 300};
    ComparingPrinter printer(size);
    const std::pair<std::int32_t, std::int32_t> kSizes[] = {{1, 1}, {2, 2}, {3, 3}, {1, 9}, {9, 1}};
    for (const auto& [width, height] : kSizes) {
        for (unsigned bits = 0; bits < 1U << static_cast<unsigned>(width * height); ++bits) {
            const Dots dots =
                test::dotsWhere(width, height, [&, w = width](std::int32_t x, std::int32_t y) {
                    return (bits >> static_cast<unsigned>(y * w + x) & 1) != 0;
                });
            for (const bool isLandscape : {true, false}) {
                const DotsPlace place{isLandscape, isLandscape ? 2 : 2 + width, 1};
                drawOn(printer.expected, dots, place);
                ASSERT_TRUE(printer.prints(pictureBytes(dots, place))) << width << " " << bits;
            }
        }
    }
}

TEST(EncodeDots, OfSeveralPicturesLeaveEachOtherAlone) {
    const TicketSize size{150, 170, 300};
    ComparingPrinter printer(size);
    for (unsigned seed = 0; seed < 200; ++seed) {
        test::Random random(seed);
        Bytes bytes;
        for (int count = between(random, 2, 4); count > 0; --count) {
            const Dots dots =
                test::randomDots(random, between(random, 1, 90), between(random, 1, 90));
            const DotsPlace place = randomPlace(random, dots, size);
            drawOn(printer.expected, dots, place);
            appendPicture(dots, place, openingOf(place), bytes);
        }
        ASSERT_TRUE(printer.prints(bytes)) << "seed " << seed;
    }
}

TEST(EncodeDots, OfALogoPrintItWhole) {
    const TicketSize size{150, 170, 300};
    ComparingPrinter printer(size);
    for (unsigned seed = 0; seed < 1000; ++seed) {
        test::Random random(seed);
        const Dots dots = test::randomDots(random, between(random, 1, 80), between(random, 1, 80));
        const DotsPlace place = randomPlace(random, dots, {100, 110, 300});
        const std::int32_t number = between(random, 0, 99);
        const std::int32_t row = between(random, 0, 50), column = between(random, 0, 60);
        Bytes bytes;
        appendLogo(dots, place, openingOf(place), number, bytes);
        const std::string print = "<SP" + std::to_string(row) + "," + std::to_string(column) +
                                  "><LD" + std::to_string(number) + ">";
        bytes.insert(bytes.end(), print.begin(), print.end());
        drawOn(printer.expected, dots, {place.isLandscape, place.row + row, place.column + column});
        ASSERT_TRUE(printer.prints(bytes)) << "seed " << seed;
    }
}

TEST(EncodeDots, OfALogoHaveItsNumberAndEnd) {
    Bytes bytes;
    appendLogo(test::dotsOf({"X "}), {true, 0, 0}, "<LM>", 7, bytes);
    EXPECT_EQ(test::readable(bytes), "<LM><RC0,0><7>{1B}<RC0,0><G1>{80}{1B}");
}

// The classic encoder takes these columns for a command; the printer reads by count.
TEST(EncodeDots, MaySpellCommands) {
    const std::string columns = "<RC1,1>\x1B";
    const Dots dots = test::dotsWhere(8, 8, [&](std::int32_t x, std::int32_t y) {
        return (columns[static_cast<std::size_t>(x)] >> (7 - y) & 1) != 0;
    });
    EXPECT_EQ(stretchesOf(dots, {true, 4, 4}), "<RC4,4><G8><RC1,1>{1B}");
    ComparingPrinter printer({20, 20, 300});
    for (const DotsPlace& place : {DotsPlace{true, 4, 4}, DotsPlace{false, 15, 4}}) {
        drawOn(printer.expected, dots, place);
        EXPECT_TRUE(printer.prints(pictureBytes(dots, place)));
        drawOn(printer.expected, dots, place);
        Bytes logo;
        appendLogo(dots, place, openingOf(place), 1, logo);
        for (const char c : std::string_view("<SP0,0><LD1>")) logo.push_back(static_cast<Byte>(c));
        EXPECT_TRUE(printer.prints(logo));
    }
}

TEST(EncodeDots, CanBePlacedIfCommandsNameAllTheirPlaces) {
    EXPECT_TRUE(canBePlaced(10, 20, {true, 0, 0}));
    EXPECT_TRUE(canBePlaced(10, 20, {true, 99'980, 99'990}));
    EXPECT_FALSE(canBePlaced(10, 20, {true, 99'981, 0}));
    EXPECT_FALSE(canBePlaced(10, 20, {true, 0, 99'991}));
    EXPECT_FALSE(canBePlaced(10, 20, {true, -1, 0}));
    EXPECT_FALSE(canBePlaced(10, 20, {true, 0, -1}));
    EXPECT_TRUE(canBePlaced(10, 20, {false, 9, 0}));
    EXPECT_TRUE(canBePlaced(10, 20, {false, 99'999, 99'980}));
    EXPECT_FALSE(canBePlaced(10, 20, {false, 8, 0}));
    EXPECT_FALSE(canBePlaced(10, 20, {false, 100'000, 0}));
    EXPECT_FALSE(canBePlaced(10, 20, {false, 9, 99'981}));
    EXPECT_FALSE(canBePlaced(10, 20, {false, 9, -1}));
    constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
    EXPECT_FALSE(canBePlaced(kMax, kMax, {true, kMax, kMax}));
    EXPECT_FALSE(canBePlaced(kMax, kMax, {false, 0, kMax}));
}

TEST(EncodeDots, AreRefusedPastTheLongestStream) {
    const Dots dots = test::dotsOf({"XX"});
    Bytes bytes(5);
    BandWriter writer(dots, {}, bytes, 5 + 13);
    EXPECT_THROW(BandWriter(dots, {}, bytes, 5 + 12).write({0, 0, 2, 1}, {0, 1}),
                 std::length_error);
    EXPECT_EQ(bytes.size(), 5U);
    writer.write({0, 0, 2, 1}, {0, 1});
    EXPECT_EQ(bytes.size(), 5U + 13U);
}

}  // namespace
}  // namespace tavio::sharp
