// What a printer's calibration does to jobs.

#include <cstdint>
#include <functional>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "printing/drawn_job.h"
#include "printing/told.h"
#include "support/bitmaps.h"
#include "support/random_picture.h"
#include "tavio/printing/job.h"

namespace tavio::printing {
namespace {

using test::Lines;
using test::Rows;
using test::told;

// 200 x 100 dots in landscape, 100 x 200 in portrait.
TicketSettings smallTicket(Orientation orientation = Orientation::kLandscape) {
    return {.stock = Stock::ofInches(1, 0.5), .resolution = 200, .orientation = orientation};
}

std::shared_ptr<const platform::Picture> pixelsOf(const Rows& rows) {
    return std::make_shared<const platform::Picture>(test::pictureOf(rows));
}

std::shared_ptr<const platform::Picture> grey(std::int32_t width, std::int32_t height, Byte value) {
    return std::make_shared<const platform::Picture>(
        test::plainPicture(width, height, value, value, value));
}

// A page of the application's engine: 72 x 36 points.
DrawnPage greyPage(const Source& /*document*/, std::int32_t /*page*/) {
    platform::PdfPage page{0, 0, 72, 36, 0, 0, test::plainPicture(72, 36, 100, 100, 100)};
    return {{platform::PdfOutcome::kDrawn, page}, 1};
}

Expected<Job, Problems> encoded(const Ticket& ticket, const Calibration& calibration = {}) {
    EncodeOptions options;
    options.calibration = calibration;
    options.pageEngine = greyPage;
    return encode(ticket, options);
}

Bytes bytesOf(const Ticket& ticket, const Calibration& calibration = {}) {
    const auto job = encoded(ticket, calibration);
    EXPECT_EQ(told(job), Lines());
    return job ? Bytes(job->bytes().begin(), job->bytes().end()) : Bytes();
}

std::string textOf(const Ticket& ticket, const Calibration& calibration = {}) {
    const Bytes bytes = bytesOf(ticket, calibration);
    return {bytes.begin(), bytes.end()};
}

// The upright ticket's dots.
Rows printed(const Ticket& ticket, const Calibration& calibration = {}) {
    const auto job = encoded(ticket, calibration);
    EXPECT_EQ(told(job), Lines());
    if (!job) return {};
    const test::DrawnJob drawn = test::drawn(*job);
    EXPECT_EQ(drawn.problems, Lines());
    const virtual_printer::Ticket& paper = drawn.tickets.at(0);
    Rows rows;
    for (std::int32_t row = 0; row < paper.size().rows; ++row) {
        rows.emplace_back();
        for (std::int32_t column = 0; column < paper.size().columns; ++column)
            rows.back() += paper.isBlack(row, column) ? 'X' : ' ';
    }
    return rows;
}

// The rows with everything moved to the right and down. White comes in at the edges.
Rows moved(const Rows& rows, std::int64_t right, std::int64_t down) {
    Rows result(rows.size(), std::string(rows.front().size(), ' '));
    const auto width = static_cast<std::int64_t>(rows.front().size());
    const auto height = static_cast<std::int64_t>(rows.size());
    for (std::int64_t y = 0; y < height; ++y)
        for (std::int64_t x = 0; x < width; ++x) {
            if (x - right < 0 || x - right >= width || y - down < 0 || y - down >= height) continue;
            result[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] =
                rows[static_cast<std::size_t>(y - down)][static_cast<std::size_t>(x - right)];
        }
    return result;
}

// ---- Offset -------------------------------------------------------------------------------------

struct Drawn {
    const char* name;
    std::function<void(Ticket&)> add;
};

class Offset : public testing::TestWithParam<Orientation> {
  protected:
    Ticket ticketOf(const Drawn& drawn) const {
        Ticket ticket(smallTicket(GetParam()));
        drawn.add(ticket);
        return ticket;
    }

    // In portrait the printer's columns run down the upright ticket, and its rows to the left.
    Rows movedRows(const Rows& rows, const Calibration& calibration) const {
        if (GetParam() == Orientation::kLandscape)
            return moved(rows, calibration.right, calibration.down);
        return moved(rows, -calibration.down, calibration.right);
    }
};

INSTANTIATE_TEST_SUITE_P(Both, Offset,
                         testing::Values(Orientation::kLandscape, Orientation::kPortrait));

TEST_P(Offset, MovesAllThatIsDrawn) {
    const Place place{12, 14};
    const DrawOptions inside{.margin = 20};
    const auto all = std::to_array<Drawn>({
        {"picture",
         [&](Ticket& ticket) {
             ticket.picture(pixelsOf({"X XX", "XX X"}), place);
         }},
        {"grey", [&](Ticket& ticket) { ticket.picture(grey(30, 50, 90), place); }},
        {"page", [&](Ticket& ticket) { ticket.page(Source::bytes(Bytes(), "x"), {}, inside); }},
        {"line", [&](Ticket& ticket) { ticket.line(place, 50, {.dash = 3}); }},
        {"box",
         [&](Ticket& ticket) {
             ticket.box(place, {20, 30});
         }},
        {"code", [&](Ticket& ticket) { ticket.code(CodeKind::kQr, "A", place); }},
    });
    for (const Drawn& drawn : all) {
        SCOPED_TRACE(drawn.name);
        const Rows rows = printed(ticketOf(drawn));
        for (const Calibration& calibration :
             {Calibration{.right = 3, .down = -2}, Calibration{.right = -5, .down = 4}})
            EXPECT_EQ(printed(ticketOf(drawn), calibration), movedRows(rows, calibration));
    }
}

TEST_P(Offset, MovesTextAsFarAsThePrinterHasRowsAndColumns) {
    const auto textAt = [&](Place place, std::int32_t right, std::int32_t down) {
        const std::string bytes = textOf(Ticket(smallTicket(GetParam())).text("A", place),
                                         {.right = right, .down = down});
        return bytes.substr(bytes.find("<RC"));
    };
    const bool isLandscape = GetParam() == Orientation::kLandscape;
    EXPECT_EQ(textAt({10, 20}, 0, 0), isLandscape ? "<RC10,20>A" : "<RC89,20>A");
    EXPECT_EQ(textAt({10, 20}, 3, -2), isLandscape ? "<RC8,23>A" : "<RC87,23>A");
    EXPECT_EQ(textAt({1, 20}, -30, -2), isLandscape ? "<RC0,0>A" : "<RC96,0>A");
}

TEST_P(Offset, MovesWhiteDotsToWhereThePrinterHasNone) {
    Rows rows = test::allBlack(40, 30);
    for (std::string& row : rows) row.replace(0, 3, "   ").replace(38, 2, "  ");
    rows.front() = rows.back() = std::string(40, ' ');
    Ticket ticket(smallTicket(GetParam()));
    const Size size = *ticketSize(ticket.settings());
    const auto right = static_cast<std::int32_t>(size.width - 40);
    for (const Place place : {Place{0, 0}, Place{right, 0}}) {
        Ticket one(smallTicket(GetParam()));
        one.picture(pixelsOf(rows), GetParam() == Orientation::kLandscape ? Place{0, 0} : place);
        const Rows plain = printed(one);
        const Calibration calibration{.right = -1, .down = -1};
        EXPECT_EQ(printed(one, calibration), movedRows(plain, calibration));
    }
    Ticket white(smallTicket(GetParam()));
    white.picture(grey(5, 5, 255));
    EXPECT_EQ(bytesOf(white, {.right = -50, .down = -99}), bytesOf(white));
}

TEST(OffsetProblems, AreBlackDotsWhereThePrinterHasNone) {
    const Ticket ticket = Ticket(smallTicket()).box({0, 0}, {20, 10});
    EXPECT_EQ(
        told(encoded(ticket, {.right = 3, .down = -2})),
        Lines{"bad-place 0.0: the box has black dots which the printer's calibration moves by "
              "3 columns and -2 rows to where the printer has none: move it away from the "
              "ticket's edge"});
    EXPECT_EQ(told(encoded(ticket, {.right = -1})).size(), 1U);
    EXPECT_EQ(told(encoded(ticket, {.right = 99'999 - 19, .down = 99'999 - 9})), Lines());
    EXPECT_EQ(told(encoded(ticket, {.right = 99'999 - 18})).size(), 1U);
    const Ticket portrait = Ticket(smallTicket(Orientation::kPortrait)).box({80, 0}, {20, 10});
    EXPECT_EQ(told(encoded(portrait, {.down = -1})).size(), 1U);
    EXPECT_EQ(told(encoded(portrait, {.down = 1})), Lines());
}

TEST(OffsetRectangles, AreWhereTheElementIsMeantToLie) {
    const auto job = encoded(Ticket(smallTicket()).box({4, 6}, {20, 10}), {.right = 3, .down = 5});
    ASSERT_TRUE(job);
    EXPECT_EQ(job->elements().at(0).rectangle, (Rectangle{6, 4, {20, 10}}));
}

// ---- Size ---------------------------------------------------------------------------------------

TEST(CalibratedSize, IsWhatIsFittedTo) {
    const Calibration calibration{.size = Size{180, 90}};
    const auto sizeOn = [&](Orientation orientation) {
        const Ticket ticket =
            Ticket(smallTicket(orientation)).picture(grey(4, 4, 0), {}, {.fit = Fit::kStretch});
        return *encoded(ticket, calibration)->elements().at(0).size;
    };
    EXPECT_EQ(sizeOn(Orientation::kLandscape), (Size{180, 90}));
    EXPECT_EQ(sizeOn(Orientation::kPortrait), (Size{90, 180}));
    EXPECT_EQ(ticketSize(smallTicket()), (Size{200, 100}));
}

TEST(CalibratedSize, IsNeverMoreThanTheTicket) {
    const Ticket ticket = Ticket(smallTicket()).picture(grey(4, 4, 0), {}, {.fit = Fit::kStretch});
    EXPECT_EQ(bytesOf(ticket, {.size = Size{500, 1'000'000}}), bytesOf(ticket));
}

TEST(CalibratedSize, IsWhatWarningsAreAbout) {
    const auto job =
        encoded(Ticket(smallTicket()).box({0, 0}, {200, 100}), {.size = Size{198, 97}});
    ASSERT_TRUE(job);
    EXPECT_EQ(told(job->warnings()),
              Lines{"beyond-ticket 0.0 (3): the box of 200 x 100 dots is larger than the ticket of "
                    "198 x 97 dots"});
}

// The rows that a printer lacks at the bottom are at the left of the upright ticket.
TEST(CalibratedSize, LeavesTheLastRowsFreeInBothOrientations) {
    for (const Orientation orientation : {Orientation::kLandscape, Orientation::kPortrait}) {
        const Ticket ticket =
            Ticket(smallTicket(orientation)).picture(grey(4, 4, 0), {}, {.fit = Fit::kStretch});
        const Rows rows = printed(ticket, {.size = Size{190, 96}});
        const bool isLandscape = orientation == Orientation::kLandscape;
        for (std::size_t y = 0; y < rows.size(); ++y)
            for (std::size_t x = 0; x < rows[y].size(); ++x) {
                const std::size_t printerRow = isLandscape ? y : 99 - x;
                const std::size_t printerColumn = isLandscape ? x : y;
                ASSERT_EQ(rows[y][x] == 'X', printerRow < 96 && printerColumn < 190)
                    << x << ", " << y;
            }
    }
}

// ---- Tone ---------------------------------------------------------------------------------------

TEST(CalibratedTone, IsThatOfPicturesAndPagesWithoutTheirOwn) {
    const auto ticketWith = [](const Tone& tone) {
        return Ticket(smallTicket())
            .picture(grey(100, 50, 128), {}, {.tone = tone})
            .page(Source::bytes(Bytes(), "x"), {}, {.tone = tone});
    };
    for (std::int32_t step = 0; step <= 9; ++step) {
        const Bytes bytes = bytesOf(ticketWith({.dotGain = step}));
        EXPECT_EQ(bytesOf(ticketWith({}), {.tone = step}), bytes) << step;
        EXPECT_EQ(bytesOf(ticketWith({.dotGain = step}), {.tone = 9 - step}), bytes) << step;
        EXPECT_EQ(bytes == bytesOf(ticketWith({})), step == 4) << step;
        EXPECT_EQ(bytesOf(ticketWith({.gamma = 2}), {.tone = step}),
                  bytesOf(ticketWith({.gamma = 2, .dotGain = step})))
            << step;
    }
}

// ---- What it does not change --------------------------------------------------------------------

TEST(Calibrations, ChangeNothingOfTheClassicWayNorOfLogosAndBytes) {
    const auto raw = std::make_shared<const Bytes>(Bytes{'<', 'P', '2', '>'});
    for (const Orientation orientation : {Orientation::kLandscape, Orientation::kPortrait}) {
        const DrawOptions classic{.classic = Classic{}};
        const Ticket ticket = Ticket(smallTicket(orientation))
                                  .picture(grey(64, 32, 100), {5, 7}, classic)
                                  .page(Source::bytes(Bytes(), "x"), {1, 2}, classic)
                                  .storeLogo(3, grey(32, 32, 90), classic)
                                  .storeLogo(4, pixelsOf(test::allBlack(9, 9)))
                                  .logo(3, {8, 9})
                                  .printerText("<RC1,2>A")
                                  .bytes(raw)
                                  .finish(Finish::kCut);
        const Bytes bytes = bytesOf(ticket);
        for (std::int32_t step = 0; step <= 9; ++step)
            EXPECT_EQ(bytesOf(ticket, {.tone = step,
                                       .right = step * 7 - 30,
                                       .down = 20 - 9 * step,
                                       .size = Size{190 - step, 90 + step}}),
                      bytes);
    }
}

// ---- Problems -----------------------------------------------------------------------------------

TEST(CalibrationProblems, AreValuesThatNoPrinterCanHave) {
    const auto problemsOf = [](const Calibration& calibration) {
        return told(encoded(Ticket(smallTicket()), calibration));
    };
    const auto tone = [](const std::string& number) {
        return Lines{"bad-setting 0: the printer's tone is " + number +
                     ": give a number from 0 to 9"};
    };
    EXPECT_EQ(problemsOf({.tone = -1}), tone("-1"));
    EXPECT_EQ(problemsOf({.tone = 10}), tone("10"));
    EXPECT_EQ(problemsOf({.right = 100'000, .down = -3}),
              Lines{"bad-setting 0: the printer's offset is 100000,-3: give at most 99999 dots"});
    EXPECT_EQ(problemsOf({.down = std::numeric_limits<std::int32_t>::min()}).size(), 1U);
    EXPECT_EQ(problemsOf({.right = 99'999, .down = -99'999}), Lines());
    EXPECT_EQ(problemsOf({.size = Size{0, 5}}),
              Lines{"bad-setting 0: the printer's size is 0 x 5 dots: give 1 dot or more for each "
                    "side"});
    EXPECT_EQ(problemsOf({.size = Size{5, -1}}).size(), 1U);
}

}  // namespace
}  // namespace tavio::printing
