// Codes for scanners, as the printer draws them.

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "printing/drawn_code.h"
#include "support/bitmaps.h"
#include "support/random_picture.h"
#include "tavio/printing/job.h"

namespace tavio::printing {
namespace {

using test::drawnCode;
using test::modulesOf;
using test::ofModule;
using test::Random;
using test::Rows;
using test::ticketOf;
using test::turned;
using test::withQuietZone;

constexpr auto kKinds =
    std::to_array<CodeKind>({CodeKind::kQr, CodeKind::kCode128, CodeKind::kEan13, CodeKind::kItf,
                             CodeKind::kPdf417, CodeKind::kAztec, CodeKind::kDataMatrix});

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
        drawnCode(Ticket(ticketOf()).code(CodeKind::kDataMatrix, "123456", {}, ofModule(3)));
    EXPECT_EQ(modulesOf(code.rows, 3), withQuietZone(kMatrixOf123456, 2, 2, 2));
}

TEST(CodeSymbols, OfQrHaveAsMuchCorrectionAsTheirSizeAllows) {
    const Rows expected = withQuietZone(kQrOfTicket, 4, 4, 4);
    for (const Correction correction :
         {Correction::kLow, Correction::kMedium, Correction::kQuartile}) {
        CodeOptions options = ofModule(2);
        options.correction = correction;
        const auto code =
            drawnCode(Ticket(ticketOf()).code(CodeKind::kQr, "TICKET 42-17", {}, options));
        EXPECT_EQ(modulesOf(code.rows, 2), expected);
    }
    CodeOptions options = ofModule(2);
    options.correction = Correction::kHigh;
    const auto code =
        drawnCode(Ticket(ticketOf()).code(CodeKind::kQr, "TICKET 42-17", {}, options));
    EXPECT_EQ(code.rectangle.size.width, (25 + 8) * 2);
}

TEST(CodeSymbols, OfAztecHaveTwoModulesOfWhiteAround) {
    const auto code = drawnCode(Ticket(ticketOf()).code(CodeKind::kAztec, "AB1", {}, ofModule(4)));
    EXPECT_EQ(modulesOf(code.rows, 4), withQuietZone(kAztecOfAb1, 2, 2, 2));
}

TEST(CodeSymbols, OfPdf417HaveRowsOfThreeModules) {
    const auto code = drawnCode(Ticket(ticketOf()).code(CodeKind::kPdf417, "ABC", {}, ofModule(2)));
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
    const auto code = drawnCode(Ticket(ticketOf()).code(kind, data, {}, options));
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

// ---- Turns and places ---------------------------------------------------------------------------

class CodePlaces : public testing::TestWithParam<Orientation> {
  protected:
    Ticket ticket() const { return Ticket(ticketOf(GetParam())); }

    Place at(std::int32_t left, std::int32_t top) const {
        return GetParam() == Orientation::kLandscape ? Place{top, left} : Place{left, top};
    }
};

std::string exampleOf(CodeKind kind) {
    if (kind == CodeKind::kEan13) return "400638133393";
    return kind == CodeKind::kItf ? "0123456" : "TICKET 42-17";
}

TEST_P(CodePlaces, HaveTheSameDotsInEveryTurn) {
    for (const CodeKind kind : kKinds) {
        SCOPED_TRACE(nameOf(kind));
        CodeOptions options = ofModule(2);
        const auto upright = drawnCode(ticket().code(kind, exampleOf(kind), at(1, 2), options));
        EXPECT_EQ(upright.rectangle.left, 1);
        EXPECT_EQ(upright.rectangle.top, 2);
        for (int turns = 1; turns < 4; ++turns) {
            options.turn = static_cast<Turn>(static_cast<int>(Turn::k0) + turns);
            const auto code = drawnCode(ticket().code(kind, exampleOf(kind), at(1, 2), options));
            EXPECT_EQ(code.rows, turned(upright.rows, turns)) << turns;
        }
    }
}

TEST_P(CodePlaces, HaveTheSameDotsInEveryColumnAndRow) {
    for (const CodeKind kind : kKinds) {
        SCOPED_TRACE(nameOf(kind));
        const auto first = drawnCode(ticket().code(kind, exampleOf(kind), {}, ofModule(2)));
        for (std::int32_t phase = 0; phase < 8; ++phase) {
            const auto code = drawnCode(
                ticket().code(kind, exampleOf(kind), at(17 + phase, 47 - phase), ofModule(2)));
            EXPECT_EQ(code.rows, first.rows);
            EXPECT_EQ(code.rectangle, (Rectangle{17 + phase, 47 - phase, first.rectangle.size}));
        }
    }
}

TEST_P(CodePlaces, AreAlignedInTheirBox) {
    const auto cornerOf = [&](Align align) {
        CodeOptions options = ofModule(3);  // 42 x 42 dots
        options.box = Size{100, 61};
        options.align = align;
        const auto code =
            drawnCode(ticket().code(CodeKind::kDataMatrix, "123456", at(10, 20), options));
        return std::pair(code.rectangle.left, code.rectangle.top);
    };
    EXPECT_EQ(cornerOf(Align::kTopLeft), std::pair(10L, 20L));
    EXPECT_EQ(cornerOf(Align::kCentre), std::pair(39L, 29L));
    EXPECT_EQ(cornerOf(Align::kBottomRight), std::pair(68L, 39L));
}

INSTANTIATE_TEST_SUITE_P(Both, CodePlaces,
                         testing::Values(Orientation::kLandscape, Orientation::kPortrait));

TEST(CodeTurns, ByThemselvesOnlyWhereTheyFitOrAreLargerSo) {
    const auto sizeOf = [](Size box, const CodeSize& size) {
        const CodeOptions options{
            .size = size, .box = box, .turn = Turn::kAuto, .barReduction = {}};
        return drawnCode(Ticket(ticketOf()).code(CodeKind::kCode128, "Az7", {}, options))
            .rectangle.size;
    };
    EXPECT_EQ(sizeOf({200, 60}, ModuleDots{2}), (Size{176, 52}));
    EXPECT_EQ(sizeOf({200, 180}, ModuleDots{2}), (Size{176, 52}));
    EXPECT_EQ(sizeOf({60, 200}, ModuleDots{2}), (Size{52, 176}));
    EXPECT_EQ(sizeOf({180, 30}, ModuleDots{2}), (Size{176, 30}));
    EXPECT_EQ(sizeOf({100, 352}, LargestInBox{}), (Size{52, 352}));
    EXPECT_EQ(sizeOf({352, 100}, LargestInBox{}), (Size{352, 52}));
}

// ---- Sizes --------------------------------------------------------------------------------------

Size sizeOf(CodeKind kind, const CodeSize& size, std::int32_t resolution = 200,
            Size box = {600, 400}) {
    TicketSettings settings = ticketOf();
    settings.resolution = resolution;
    const CodeOptions options{.size = size, .box = box, .turn = Turn::k0, .barReduction = {}};
    return drawnCode(Ticket(settings).code(kind, exampleOf(kind), {}, options)).rectangle.size;
}

// 21 modules and twice 4.
TEST(CodeSizes, InMillimetresAreNotSmaller) {
    EXPECT_EQ(sizeOf(CodeKind::kQr, ModuleMillimetres{0.254}), (Size{58, 58}));
    EXPECT_EQ(sizeOf(CodeKind::kQr, ModuleMillimetres{0.2541}), (Size{87, 87}));
    EXPECT_EQ(sizeOf(CodeKind::kQr, ModuleMillimetres{0.254}, 300), (Size{87, 87}));
    EXPECT_EQ(sizeOf(CodeKind::kQr, ModuleMillimetres{0.254}, 600), (Size{174, 174}));
    EXPECT_EQ(sizeOf(CodeKind::kQr, WidthMillimetres{21 * 0.254}, 300), (Size{87, 87}));
    EXPECT_EQ(sizeOf(CodeKind::kQr, WidthMillimetres{21 * 0.254 + 0.01}, 300), (Size{116, 116}));
    EXPECT_EQ(sizeOf(CodeKind::kQr, ModuleMillimetres{0.001}), (Size{29, 29}));
}

TEST(CodeSizes, AreTheLargestThatFitTheBox) {
    EXPECT_EQ(sizeOf(CodeKind::kQr, LargestInBox{}, 200, {144, 400}), (Size{116, 116}));
    EXPECT_EQ(sizeOf(CodeKind::kQr, LargestInBox{}, 200, {400, 145}), (Size{145, 145}));
    EXPECT_EQ(sizeOf(CodeKind::kEan13, LargestInBox{}, 200, {339, 400}), (Size{339, 208}));
    EXPECT_EQ(sizeOf(CodeKind::kEan13, LargestInBox{}, 200, {339, 90}), (Size{339, 90}));
}

TEST(CodeSizes, OfBarsAreAsHighAsAskedFor) {
    CodeOptions options = ofModule(2);
    options.barHeight = 17;
    const auto code = drawnCode(Ticket(ticketOf()).code(CodeKind::kItf, "12", {}, options));
    EXPECT_EQ(code.rectangle.size.height, 17);
}

TEST(CodeSizes, MayBeWithoutTheQuietZone) {
    CodeOptions options = ofModule(3);
    options.hasQuietZone = false;
    const auto code =
        drawnCode(Ticket(ticketOf()).code(CodeKind::kDataMatrix, "123456", {}, options));
    EXPECT_EQ(modulesOf(code.rows, 3), kMatrixOf123456);
}

// ---- Narrower bars ------------------------------------------------------------------------------

Rows barsReducedBy(std::optional<double> reduction, std::int32_t module, std::int32_t tone = 4) {
    CodeOptions options = ofModule(module);
    options.barReduction = reduction;
    options.barHeight = 100;
    EncodeOptions encoding;
    encoding.calibration.tone = tone;
    return drawnCode(Ticket(ticketOf()).code(CodeKind::kItf, "12", {}, options), encoding).rows;
}

TEST(NarrowerBars, LackTheirLastDotInAsManyRows) {
    const Rows full = barsReducedBy(0, 3);
    const Rows reduced = barsReducedBy(0.25, 3);
    const std::string& fullBars = full[0];
    std::string narrowBars = fullBars;
    for (std::size_t at = 0; at + 1 < narrowBars.size(); ++at)
        if (fullBars[at] == 'X' && fullBars[at + 1] == '.') narrowBars[at] = '.';
    for (std::size_t row = 0; row < reduced.size(); ++row)
        EXPECT_EQ(reduced[row], row % 4 == 3 ? narrowBars : fullBars) << row;
}

TEST(NarrowerBars, AreNeverGone) {
    EXPECT_EQ(barsReducedBy(1, 1), barsReducedBy(0, 1));
    for (const std::string& row : barsReducedBy(1, 2)) EXPECT_NE(row.find("X...X"), row.npos);
}

TEST(NarrowerBars, FollowTheCalibration) {
    for (const std::int32_t tone : {0, 4, 7})
        EXPECT_EQ(barsReducedBy(std::nullopt, 3, tone), barsReducedBy(0, 3)) << tone;
    for (const std::int32_t tone : {8, 9})
        EXPECT_EQ(barsReducedBy(std::nullopt, 3, tone), barsReducedBy(0.5, 3)) << tone;
}

// ---- Random data --------------------------------------------------------------------------------

std::string randomData(Random& random, CodeKind kind) {
    std::string data;
    for (int count = test::between(random, 1, 30); count > 0; --count) {
        data += static_cast<char>(kind == CodeKind::kItf ? test::between(random, '0', '9')
                                                         : test::between(random, 0, 127));
    }
    if (kind == CodeKind::kEan13) data = std::to_string(100000000000 + random() % 900000000000);
    return data;
}

// Each module is the same at every size, and other data are another symbol.
TEST(RandomCodes, AreTheSameSymbolAtEverySize) {
    for (unsigned seed = 0; seed < 60; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        Random random(seed);
        const CodeKind kind = kKinds[seed % kKinds.size()];
        const std::string data = randomData(random, kind);
        const auto symbolOf = [&](std::int32_t module, const std::string& text) {
            CodeOptions options = ofModule(module);
            options.turn = Turn::kAuto;
            options.box = Size{1800, 400};
            options.hasQuietZone = false;
            if (kind == CodeKind::kCode128 || kind == CodeKind::kEan13 || kind == CodeKind::kItf) {
                options.barReduction = 0;
                options.barHeight = 8 * module;
            }
            TicketSettings settings = ticketOf();
            settings.stock = Stock::ofInches(9, 2);
            return modulesOf(drawnCode(Ticket(settings).code(kind, text, {}, options)).rows,
                             static_cast<std::size_t>(module));
        };
        const Rows symbol = symbolOf(1, data);
        EXPECT_EQ(symbolOf(test::between(random, 2, 4), data), symbol);
        EXPECT_NE(symbolOf(1, exampleOf(kind)), symbol);
    }
}

TEST(Codes, AreTheSameOnManyThreads) {
    const auto bytesOf = [](std::size_t index) {
        const CodeKind kind = kKinds[index % kKinds.size()];
        const auto job = encode(Ticket(ticketOf()).code(kind, exampleOf(kind), {}, ofModule(1)));
        return job ? Bytes(job->bytes().begin(), job->bytes().end()) : Bytes();
    };
    std::vector<Bytes> alone;
    for (std::size_t index = 0; index < kKinds.size(); ++index) alone.push_back(bytesOf(index));
    std::vector<Bytes> together(8 * kKinds.size());
    std::vector<std::thread> threads;
    for (std::size_t thread = 0; thread < 8; ++thread) {
        threads.emplace_back([&, thread] {
            for (std::size_t index = thread; index < together.size(); index += 8)
                together[index] = bytesOf(index);
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (std::size_t index = 0; index < together.size(); ++index) {
        EXPECT_NE(together[index], Bytes());
        EXPECT_EQ(together[index], alone[index % alone.size()]);
    }
}

}  // namespace
}  // namespace tavio::printing
