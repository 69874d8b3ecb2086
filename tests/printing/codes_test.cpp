// Codes for scanners, as the printer draws them.

#include <algorithm>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "printing/drawn_job.h"
#include "printing/told.h"
#include "support/bitmaps.h"
#include "support/random_picture.h"
#include "tavio/printing/job.h"

namespace tavio::printing {
namespace {

using test::Lines;
using test::Random;
using test::Rows;
using test::told;

constexpr auto kKinds =
    std::to_array<CodeKind>({CodeKind::kQr, CodeKind::kCode128, CodeKind::kEan13, CodeKind::kItf,
                             CodeKind::kPdf417, CodeKind::kAztec, CodeKind::kDataMatrix});

// 600 x 400 dots in landscape, 400 x 600 in portrait.
TicketSettings ticketOf(Orientation orientation = Orientation::kLandscape) {
    return {.stock = Stock::ofInches(3, 2), .resolution = 200, .orientation = orientation};
}

struct Element {
    Rectangle rectangle;
    Rows rows;  // of the rectangle
};

// The only element of the ticket, and that nothing else is printed.
Element printed(const Ticket& ticket, const EncodeOptions& options = {}) {
    const auto job = encode(ticket, options);
    EXPECT_EQ(told(job), Lines());
    if (!job) return {};
    const test::DrawnJob drawn = test::drawn(*job);
    EXPECT_EQ(drawn.problems, Lines());
    const virtual_printer::Ticket& paper = drawn.tickets.at(0);
    Element element{job->elements()[0].rectangle.value_or(Rectangle{}), {}};
    const auto& [left, top, size] = element.rectangle;
    element.rows.assign(static_cast<std::size_t>(size.height),
                        std::string(static_cast<std::size_t>(size.width), '.'));
    for (std::int64_t row = 0; row < paper.size().rows; ++row)
        for (std::int64_t column = 0; column < paper.size().columns; ++column) {
            if (!paper.isBlack(row, column)) continue;
            const bool isInside = row >= top && row < top + size.height && column >= left &&
                                  column < left + size.width;
            EXPECT_TRUE(isInside) << "row " << row << ", column " << column;
            if (isInside)
                element.rows[static_cast<std::size_t>(row - top)]
                            [static_cast<std::size_t>(column - left)] = 'X';
        }
    return element;
}

CodeOptions ofModule(std::int32_t dots) {
    return {.size = ModuleDots{dots}, .turn = Turn::k0, .barReduction = {}};
}

// One letter a module; the picture must consist of squares of `module` dots.
Rows modulesOf(const Rows& rows, std::size_t module) {
    Rows modules;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        std::string line;
        for (std::size_t column = 0; column < rows[row].size(); ++column) {
            if (column % module == 0) line += rows[row][column];
            EXPECT_EQ(rows[row][column], line.back()) << "row " << row << ", column " << column;
        }
        if (row % module == 0) modules.push_back(line);
        EXPECT_EQ(line, modules.back()) << "row " << row;
    }
    return modules;
}

Rows turned(const Rows& rows, int quarterTurns) {
    if (quarterTurns == 0) return rows;
    Rows result(rows[0].size());
    for (std::size_t column = 0; column < rows[0].size(); ++column)
        for (std::size_t row = rows.size(); row > 0; --row) result[column] += rows[row - 1][column];
    return turned(result, quarterTurns - 1);
}

Rows withQuietZone(const Rows& symbol, std::size_t left, std::size_t right, std::size_t above) {
    const std::size_t width = left + symbol[0].size() + right;
    Rows rows(above, std::string(width, '.'));
    for (const std::string& row : symbol)
        rows.push_back(std::string(left, '.') + row + std::string(right, '.'));
    rows.insert(rows.end(), above, std::string(width, '.'));
    return rows;
}

// ---- Symbols ------------------------------------------------------------------------------------

// The example of its standard.
const Rows kMatrixOf123456{
    "X.X.X.X.X.", "XX..X.XX.X", "XX.....X..", "XX...XXX.X", "XX....X...",
    "X.....XXXX", "XXX.XX....", "XXXX.XX..X", "X..XXX.X..", "XXXXXXXXXX",
};

const Rows kQrOfTicket{
    "XXXXXXX.XXXX..XXXXXXX", "X.....X.X.....X.....X", "X.XXX.X.XXXX..X.XXX.X",
    "X.XXX.X.X..XX.X.XXX.X", "X.XXX.X.XX..X.X.XXX.X", "X.....X..XXX..X.....X",
    "XXXXXXX.X.X.X.XXXXXXX", "........XX.XX........", ".XX.X.XX...XX.X.XXXXX",
    "X.X.XX.X.X.X...X....X", "..XXX.X..X.X....X.X..", "X..X...X.XX..XX.X..XX",
    ".XX.XXX.X.X...X.X...X", "........X.XXXX.X.X...", "XXXXXXX.XXXX..X...XXX",
    "X.....X....XXX.X.XXXX", "X.XXX.X.X.X...X.X..XX", "X.XXX.X...X...XX...X.",
    "X.XXX.X.X.X.X..X..X.X", "X.....X.X.....XXX.XXX", "XXXXXXX...X.X.X.XX..X",
};

const Rows kAztecOfAb1{
    "..XX...X..XX.X.", "...X.X..XX.X...", ".XXX......X.XXX", "..XXXXXXXXXXXXX", "..XX.......XX..",
    "XXXX.XXXXX.XXX.", "XX.X.X...X.XXX.", "XX.X.X.X.X.XXX.", "...X.X...X.X.X.", ".XXX.XXXXX.XX.X",
    "XXXX.......XX..", "XX.XXXXXXXXXXX.", "X.....X.X....X.", "X...X.XXX.X...X", ".X.XXX..X.XX.X.",
};

TEST(CodeSymbols, OfDataMatrixAreThoseOfTheStandard) {
    const auto code =
        printed(Ticket(ticketOf()).code(CodeKind::kDataMatrix, "123456", {}, ofModule(3)));
    EXPECT_EQ(modulesOf(code.rows, 3), withQuietZone(kMatrixOf123456, 2, 2, 2));
}

TEST(CodeSymbols, OfQrHaveAsMuchCorrectionAsTheirSizeAllows) {
    const Rows expected = withQuietZone(kQrOfTicket, 4, 4, 4);
    for (const Correction correction :
         {Correction::kLow, Correction::kMedium, Correction::kQuartile}) {
        CodeOptions options = ofModule(2);
        options.correction = correction;
        const auto code =
            printed(Ticket(ticketOf()).code(CodeKind::kQr, "TICKET 42-17", {}, options));
        EXPECT_EQ(modulesOf(code.rows, 2), expected);
    }
    CodeOptions options = ofModule(2);
    options.correction = Correction::kHigh;
    const auto code = printed(Ticket(ticketOf()).code(CodeKind::kQr, "TICKET 42-17", {}, options));
    EXPECT_EQ(code.rectangle.size.width, (25 + 8) * 2);
}

TEST(CodeSymbols, OfAztecHaveTwoModulesOfWhiteAround) {
    const auto code = printed(Ticket(ticketOf()).code(CodeKind::kAztec, "AB1", {}, ofModule(4)));
    EXPECT_EQ(modulesOf(code.rows, 4), withQuietZone(kAztecOfAb1, 2, 2, 2));
}

TEST(CodeSymbols, OfPdf417HaveRowsOfThreeModules) {
    const auto code = printed(Ticket(ticketOf()).code(CodeKind::kPdf417, "ABC", {}, ofModule(2)));
    const Rows modules = modulesOf(code.rows, 2);
    ASSERT_EQ(modules.size(), 6U * 3 + 4);
    const std::string blank(2 + 103 + 2, '.');
    EXPECT_EQ(modules[1], blank);
    for (std::size_t row = 2; row < 20; row += 3) {
        EXPECT_EQ(modules[row], modules[row + 1]);
        EXPECT_EQ(modules[row], modules[row + 2]);
        EXPECT_TRUE(modules[row].starts_with("..XXXXXXXX.X.X.X...")) << modules[row];
        EXPECT_TRUE(modules[row].ends_with("..XXXXXXX.X...X.X..X..")) << modules[row];
    }
    EXPECT_EQ(
        modules[2].substr(2),
        "XXXXXXXX.X.X.X...XXXX.X.X.XXXX....XXXX.X.X..XXXX...XXXX.X.X.XXXX....XXXX.X.X.XXXX...."
        "XXXXXXX.X...X.X..X..");
    EXPECT_EQ(modules[20], blank);
}

// The bars of a linear code, one letter a module; all rows must be equal.
std::string barsOf(CodeKind kind, const std::string& data, Size* size = nullptr) {
    CodeOptions options = ofModule(2);
    options.barReduction = 0;
    const auto code = printed(Ticket(ticketOf()).code(kind, data, {}, options));
    if (size) *size = code.rectangle.size;
    const Rows modules = modulesOf({code.rows[0]}, 2);
    EXPECT_EQ(code.rows, Rows(code.rows.size(), code.rows[0]));
    return modules.at(0);
}

TEST(CodeSymbols, OfEan13HaveTheirCheckDigit) {
    Size size;
    const std::string bars =
        "X.X...XX.X.X..XXX.X.XXXX.XXXX.X...X..X.XX..XX.X.X.X....X.X....X.X....X.XXX.X..X....X.XX.."
        "XX.X.X";
    const std::string expected = withQuietZone({bars}, 11, 7, 0)[0];
    EXPECT_EQ(barsOf(CodeKind::kEan13, "400638133393", &size), expected);
    EXPECT_EQ(barsOf(CodeKind::kEan13, "4006381333931"), expected);
    EXPECT_EQ(size, (Size{113 * 2, 139}));
}

TEST(CodeSymbols, OfCode128AreSurroundedByTenModules) {
    Size size;
    EXPECT_EQ(
        barsOf(CodeKind::kCode128, "Az7", &size),
        "..........XX.X..X....X.X...XX...XX.XXXX.XX.XXX.XX.XXX.XXXX.XXX.X.XX...XXX.X.XX..........");
    EXPECT_EQ(size, (Size{88 * 2, 52}));  // 6.5 mm at 200 dots an inch
}

TEST(CodeSymbols, OfItfHaveAnEvenNumberOfDigits) {
    EXPECT_EQ(barsOf(CodeKind::kItf, "123"), barsOf(CodeKind::kItf, "0123"));
    EXPECT_EQ(barsOf(CodeKind::kItf, "0123"),
              "..........X.X.X...X.XXX.XXX.X...X...XXX...X.X.XXX.XXX.X..........");
}

}  // namespace
}  // namespace tavio::printing
