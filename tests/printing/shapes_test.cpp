// Lines, frames and filled boxes: their dots as a printer prints them.

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "printing/printed_rows.h"
#include "printing/told.h"
#include "support/bitmaps.h"
#include "support/random_picture.h"
#include "tavio/printing/job.h"

namespace tavio::printing {
namespace {

using test::blackDots;
using test::Lines;
using test::printedRows;
using test::Random;
using test::Rows;
using test::told;

constexpr auto kMax = std::numeric_limits<std::int32_t>::max();
constexpr auto kMin = std::numeric_limits<std::int32_t>::min();

// 20 x 10 dots in landscape, 10 x 20 in portrait.
TicketSettings tinyTicket(Orientation orientation) {
    return {.stock = Stock::ofInches(0.1, 0.05), .resolution = 200, .orientation = orientation};
}

// The top left part of a ticket.
Rows corner(const Rows& rows, std::size_t width, std::size_t height) {
    return test::part(rows, 0, 0, width, height);
}

Place placeOf(Orientation orientation, std::int32_t left, std::int32_t top) {
    return orientation == Orientation::kLandscape ? Place{top, left} : Place{left, top};
}

class Shapes : public testing::TestWithParam<Orientation> {
  protected:
    Ticket ticket() const { return Ticket(tinyTicket(GetParam())); }
    Place at(std::int32_t left, std::int32_t top) const { return placeOf(GetParam(), left, top); }
};

INSTANTIATE_TEST_SUITE_P(Both, Shapes,
                         testing::Values(Orientation::kLandscape, Orientation::kPortrait));

// ---- Lines --------------------------------------------------------------------------------------

TEST_P(Shapes, LinesRunAcross) {
    const Rows rows = printedRows(ticket().line(at(2, 1), 6, {.thickness = 2}));
    EXPECT_EQ(corner(rows, 9, 4), (Rows{
                                      ".........",
                                      "..XXXXXX.",
                                      "..XXXXXX.",
                                      ".........",
                                  }));
    EXPECT_EQ(blackDots(rows), 12U);
}

TEST_P(Shapes, LinesRunDown) {
    const Rows rows = printedRows(
        ticket().line(at(2, 1), 4, {.direction = LineDirection::kDown, .thickness = 3}));
    EXPECT_EQ(corner(rows, 6, 6), (Rows{
                                      "......",
                                      "..XXX.",
                                      "..XXX.",
                                      "..XXX.",
                                      "..XXX.",
                                      "......",
                                  }));
    EXPECT_EQ(blackDots(rows), 12U);
}

TEST_P(Shapes, LinesBeginWithADashAndEndWhereTheLengthDoes) {
    const Rows across = printedRows(ticket().line(at(0, 1), 9, {.thickness = 2, .dash = 2}));
    EXPECT_EQ(corner(across, 10, 4), (Rows{
                                         "..........",
                                         "XX..XX..X.",
                                         "XX..XX..X.",
                                         "..........",
                                     }));
    const Rows down = printedRows(
        ticket().line(at(1, 0), 8, {.direction = LineDirection::kDown, .thickness = 1, .dash = 3}));
    EXPECT_EQ(corner(down, 3, 9), (Rows{
                                      ".X.",
                                      ".X.",
                                      ".X.",
                                      "...",
                                      "...",
                                      "...",
                                      ".X.",
                                      ".X.",
                                      "...",
                                  }));
    EXPECT_EQ(printedRows(ticket().line(at(0, 0), 5, {.dash = kMax})),
              printedRows(ticket().line(at(0, 0), 5)));
}

// ---- Boxes --------------------------------------------------------------------------------------

TEST_P(Shapes, FramesLieInsideTheBox) {
    const Rows rows = printedRows(ticket().box(at(1, 2), {8, 6}, {.thickness = 2}));
    EXPECT_EQ(corner(rows, 10, 9), (Rows{
                                       "..........",
                                       "..........",
                                       ".XXXXXXXX.",
                                       ".XXXXXXXX.",
                                       ".XX....XX.",
                                       ".XX....XX.",
                                       ".XXXXXXXX.",
                                       ".XXXXXXXX.",
                                       "..........",
                                   }));
}

TEST_P(Shapes, BoxesThatAreFilledAreBlack) {
    const Rows filled = printedRows(ticket().box(at(1, 2), {7, 5}, {.isFilled = true}));
    EXPECT_EQ(blackDots(filled), 35U);
    EXPECT_EQ(printedRows(ticket().box(at(1, 2), {7, 5}, {.thickness = 3})), filled);
    EXPECT_EQ(printedRows(ticket().box(at(1, 2), {7, 5}, {.thickness = kMax})), filled);
    EXPECT_EQ(blackDots(printedRows(ticket().box(at(9, 9), {1, 1}))), 1U);
}

// ---- Any shapes on any ticket -------------------------------------------------------------------

struct Shape {
    bool isLine = false;
    std::int32_t left = 0;
    std::int32_t top = 0;
    Size size;
    std::int32_t thickness = 1;  // of a frame
    std::int32_t dash = 0;
    bool isDown = false;
    bool isFilled = false;

    bool isBlack(std::int32_t x, std::int32_t y) const {
        if (isLine) return dash == 0 || (isDown ? y : x) / dash % 2 == 0;
        return isFilled || std::min({x, y, size.width - 1 - x, size.height - 1 - y}) < thickness;
    }
};

Shape randomShape(Random& random, Size ticket) {
    Shape shape;
    shape.isLine = test::chance(random, 50);
    shape.isDown = test::chance(random, 50);
    shape.isFilled = test::chance(random, 30);
    shape.thickness = test::between(random, 1, 9);
    shape.dash = test::chance(random, 50) ? test::between(random, 1, 40) : 0;
    shape.left = test::between(random, 0, ticket.width - 1);
    shape.top = test::between(random, 0, ticket.height - 1);
    shape.size = {test::between(random, 1, std::min(ticket.width - shape.left, 300)),
                  test::between(random, 1, std::min(ticket.height - shape.top, 300))};
    return shape;
}

void add(Ticket& ticket, const Shape& shape) {
    const Place place = placeOf(ticket.settings().orientation, shape.left, shape.top);
    const Size& size = shape.size;
    if (!shape.isLine) {
        ticket.box(place, size, {.thickness = shape.thickness, .isFilled = shape.isFilled});
    } else if (shape.isDown) {
        ticket.line(
            place, size.height,
            {.direction = LineDirection::kDown, .thickness = size.width, .dash = shape.dash});
    } else {
        ticket.line(place, size.width, {.thickness = size.height, .dash = shape.dash});
    }
}

void expectPrinted(const TicketSettings& settings, Random& random) {
    const Size size = *ticketSize(settings);
    const Shape shape = randomShape(random, size);
    Ticket ticket(settings);
    add(ticket, shape);
    const Rows rows = printedRows(ticket);
    std::size_t black = 0;
    for (std::int32_t y = 0; y < shape.size.height; ++y)
        for (std::int32_t x = 0; x < shape.size.width; ++x) {
            if (!shape.isBlack(x, y)) continue;
            ++black;
            ASSERT_EQ(rows.at(static_cast<std::size_t>(shape.top + y))
                          .at(static_cast<std::size_t>(shape.left + x)),
                      'X');
        }
    EXPECT_EQ(blackDots(rows), black);
}

TEST_P(Shapes, LieAtTheirPlaceOnEveryStock) {
    for (const std::int32_t resolution : {200, 300})
        for (std::int32_t stock = 0; stock < settings::kStockCount; ++stock) {
            const auto seed = static_cast<unsigned>(stock * 1000 + resolution);
            SCOPED_TRACE(testing::Message() << "seed " << seed);
            Random random(seed);
            expectPrinted({.stock = Stock::ofIndex(stock),
                           .resolution = resolution,
                           .orientation = GetParam()},
                          random);
        }
}

// ---- Warnings and problems ----------------------------------------------------------------------

TEST(ShapeWarnings, TellWhatLiesBeyondTheTicket) {
    const TicketSettings settings = tinyTicket(Orientation::kLandscape);
    EXPECT_EQ(told(encode(Ticket(settings).line({2, 4}, 19, {.thickness = 1}))->warnings()),
              Lines{"beyond-ticket 0.0 (3): the line of 19 x 1 dots at row 2, column 4 reaches "
                    "beyond the ticket of 20 x 10 dots"});
    EXPECT_EQ(told(encode(Ticket(settings).box({0, 0}, {8, 12}))->warnings()),
              Lines{"beyond-ticket 0.0 (2): the box of 8 x 12 dots is larger than the ticket of "
                    "20 x 10 dots"});
}

Lines problemsOfLine(Place place, std::int32_t length, const LineOptions& options = {}) {
    return told(encode(Ticket(tinyTicket(Orientation::kLandscape)).line(place, length, options)));
}

Lines problemsOfBox(Place place, Size size, const BoxOptions& options = {},
                    Orientation orientation = Orientation::kLandscape) {
    return told(encode(Ticket(tinyTicket(orientation)).box(place, size, options)));
}

TEST(ShapeProblems, AreSidesBelowOneDot) {
    const auto line = [](const std::string& length, const std::string& rest) {
        return Lines{"bad-setting 0.0: a line is " + length + " dots long and " + rest +
                     ": give a length and a thickness of 1 or more, and dashes of 0 or more"};
    };
    EXPECT_EQ(problemsOfLine({}, 0), line("0", "3 thick, with dashes of 0"));
    EXPECT_EQ(problemsOfLine({}, kMin), line("-2147483648", "3 thick, with dashes of 0"));
    EXPECT_EQ(problemsOfLine({}, 5, {.thickness = 0}), line("5", "0 thick, with dashes of 0"));
    EXPECT_EQ(problemsOfLine({}, 5, {.dash = -1}), line("5", "3 thick, with dashes of -1"));
    const std::string rest = ": give 1 dot or more for each of them";
    EXPECT_EQ(problemsOfBox({}, {0, 5}),
              Lines{"bad-setting 0.0: a box is 0 x 5 dots with a frame of 3" + rest});
    EXPECT_EQ(problemsOfBox({}, {5, kMin}),
              Lines{"bad-setting 0.0: a box is 5 x -2147483648 dots with a frame of 3" + rest});
    EXPECT_EQ(problemsOfBox({}, {5, 5}, {.thickness = -1, .isFilled = true}),
              Lines{"bad-setting 0.0: a box is 5 x 5 dots with a frame of -1" + rest});
}

TEST(ShapeProblems, ArePlacesThatThePrinterCannotName) {
    const std::string reaches =
        " reaches beyond the ticket of 20 x 10 dots to where the printer has no rows or columns: "
        "move it, or make it smaller";
    EXPECT_EQ(problemsOfLine({0, -1}, 5), Lines{"bad-place 0.0: the line of 5 x 3 dots" + reaches});
    EXPECT_EQ(problemsOfBox({kMax, kMax}, {9, 9}),
              Lines{"bad-place 0.0: the box of 9 x 9 dots" + reaches});
    EXPECT_EQ(problemsOfBox({kMin, kMin}, {9, 9}, {}, Orientation::kPortrait).size(), 1U);
    EXPECT_EQ(problemsOfBox({kMax, kMax}, {9, 9}, {}, Orientation::kPortrait).size(), 1U);
    EXPECT_EQ(problemsOfLine({0, 0}, 100'001, {.direction = LineDirection::kDown}).size(), 1U);
}

TEST(ShapeProblems, AreShapesOfMoreDotsThanCanBePrinted) {
    EXPECT_EQ(problemsOfBox({}, {kMax, kMax}),
              Lines{"too-large 0.0: the box comes to 2147483647 x 2147483647 dots, more than can "
                    "be printed: make it smaller"});
    EXPECT_EQ(problemsOfLine({}, kMax, {.thickness = kMax, .dash = kMax}).size(), 1U);
    EXPECT_EQ(problemsOfBox({}, {16'385, 16'384}).size(), 1U);
}

}  // namespace
}  // namespace tavio::printing
