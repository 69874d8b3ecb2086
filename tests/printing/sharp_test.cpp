// Pages and pictures drawn the sharp way: every dot at its place.

#include <algorithm>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "pictures/sample_pictures.h"
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

// 200 x 100 dots in landscape, 100 x 200 in portrait.
TicketSettings smallTicket(Orientation orientation = Orientation::kLandscape) {
    return {.stock = Stock::ofInches(1, 0.5), .resolution = 200, .orientation = orientation};
}

std::shared_ptr<const platform::Picture> pixelsOf(const Rows& rows) {
    return std::make_shared<const platform::Picture>(test::pictureOf(rows));
}

std::shared_ptr<const platform::Picture> grey(std::int32_t side, Byte value) {
    return std::make_shared<const platform::Picture>(
        test::plainPicture(side, side, value, value, value));
}

// The upright ticket's dots.
Rows rowsOf(const virtual_printer::Ticket& ticket) {
    Rows rows(static_cast<std::size_t>(ticket.size().rows),
              std::string(static_cast<std::size_t>(ticket.size().columns), ' '));
    for (std::size_t row = 0; row < rows.size(); ++row)
        for (std::size_t column = 0; column < rows[row].size(); ++column)
            if (ticket.isBlack(static_cast<std::int64_t>(row), static_cast<std::int64_t>(column)))
                rows[row][column] = 'X';
    return rows;
}

Rows printed(const Ticket& ticket) {
    const auto job = encode(ticket);
    EXPECT_EQ(told(job), Lines());
    if (!job) return {};
    const test::DrawnJob drawn = test::drawn(*job);
    EXPECT_EQ(drawn.problems, Lines());
    return rowsOf(drawn.tickets.at(0));
}

// The part of a ticket that a picture covers.
Rows cut(const Rows& ticket, std::size_t left, std::size_t top, const Rows& like) {
    Rows rows;
    for (std::size_t row = 0; row < like.size(); ++row)
        rows.push_back(ticket.at(top + row).substr(left, like[row].size()));
    return rows;
}

std::size_t blackDots(const Rows& rows) {
    std::size_t count = 0;
    for (const std::string& row : rows)
        count += static_cast<std::size_t>(std::ranges::count(row, 'X'));
    return count;
}

Rows randomRows(Random& random, int maxWidth, int maxHeight) {
    const auto width = static_cast<std::size_t>(test::between(random, 1, maxWidth));
    const auto height = static_cast<std::size_t>(test::between(random, 1, maxHeight));
    const int percent = test::chance(random, 50) ? test::between(random, 0, 10) : 60;
    Rows rows(height, std::string(width, ' '));
    for (std::string& row : rows)
        for (char& dot : row) dot = test::chance(random, percent) ? 'X' : ' ';
    return rows;
}

void put(Rows& ticket, const Rows& picture, std::size_t left, std::size_t top) {
    for (std::size_t row = 0; row < picture.size(); ++row)
        for (std::size_t column = 0; column < picture[row].size(); ++column)
            if (picture[row][column] == 'X') ticket[top + row][left + column] = 'X';
}

Place placeOf(Orientation orientation, std::size_t left, std::size_t top) {
    const auto across = static_cast<std::int32_t>(left);
    const auto down = static_cast<std::int32_t>(top);
    return orientation == Orientation::kLandscape ? Place{down, across} : Place{across, down};
}

// ---- Dots ---------------------------------------------------------------------------------------

class SharpDots : public testing::TestWithParam<Orientation> {};

TEST_P(SharpDots, OfPicturesAreThoseOfThePictures) {
    const Size size = *ticketSize(smallTicket(GetParam()));
    const auto width = static_cast<std::size_t>(size.width);
    const auto height = static_cast<std::size_t>(size.height);
    for (unsigned seed = 0; seed < 400; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        Random random(seed);
        Ticket ticket(smallTicket(GetParam()));
        Rows expected(height, std::string(width, ' '));
        for (int count = test::between(random, 1, 3); count > 0; --count) {
            const Rows rows = randomRows(random, size.width, size.height);
            const std::size_t left = random() % (width - rows[0].size() + 1);
            const std::size_t top = random() % (height - rows.size() + 1);
            ticket.picture(pixelsOf(rows), placeOf(GetParam(), left, top));
            put(expected, rows, left, top);
        }
        ASSERT_EQ(printed(ticket), expected);
    }
}

TEST_P(SharpDots, OfALogoAreAllOfThePicture) {
    const Rows rows = test::allBlack(13, 11);
    Ticket ticket(smallTicket(GetParam()));
    ticket.storeLogo(7, pixelsOf(rows)).logo(7, {0, 0});
    Rows expected = printed(Ticket(smallTicket(GetParam())).picture(pixelsOf(rows)));
    EXPECT_EQ(blackDots(expected), 13U * 11U);
    EXPECT_EQ(printed(ticket), expected);
}

INSTANTIATE_TEST_SUITE_P(Both, SharpDots,
                         testing::Values(Orientation::kLandscape, Orientation::kPortrait));

// ---- Fit ----------------------------------------------------------------------------------------

Rectangle rectangleOf(const Ticket& ticket) {
    const auto job = encode(ticket);
    EXPECT_EQ(told(job), Lines());
    return job ? job->elements()[0].rectangle.value_or(Rectangle{}) : Rectangle{};
}

Rectangle fitted(std::int32_t width, std::int32_t height, const DrawOptions& options,
                 Place place = {}) {
    const auto picture =
        std::make_shared<const platform::Picture>(test::plainPicture(width, height, 0, 0, 0));
    return rectangleOf(Ticket(smallTicket()).picture(picture, place, options));
}

TEST(SharpFit, IsTheOwnSizeOrWhatTheTicketHasRoomFor) {
    EXPECT_EQ(fitted(20, 10, {}), (Rectangle{0, 0, {20, 10}}));
    EXPECT_EQ(fitted(400, 100, {}), (Rectangle{0, 0, {200, 50}}));
    EXPECT_EQ(fitted(400, 100, {}, {.row = 30, .column = 100}), (Rectangle{100, 30, {100, 25}}));
}

TEST(SharpFit, FollowsTheOptions) {
    EXPECT_EQ(fitted(20, 10, {.fit = Fit::kContain}), (Rectangle{0, 0, {200, 100}}));
    EXPECT_EQ(fitted(10, 10, {.fit = Fit::kContain}), (Rectangle{0, 0, {100, 100}}));
    EXPECT_EQ(fitted(10, 10, {.fit = Fit::kCover}), (Rectangle{0, 0, {200, 100}}));
    EXPECT_EQ(fitted(10, 10, {.fit = Fit::kStretch}), (Rectangle{0, 0, {200, 100}}));
    EXPECT_EQ(fitted(190, 90, {.fit = Fit::kActual}), (Rectangle{0, 0, {190, 90}}));
}

TEST(SharpFit, TurnsWhatIsPrintedLargerThatWay) {
    EXPECT_EQ(fitted(100, 200, {}), (Rectangle{0, 0, {200, 100}}));
    EXPECT_EQ(fitted(100, 200, {.turn = Turn::k0}), (Rectangle{0, 0, {50, 100}}));
    EXPECT_EQ(fitted(20, 10, {.turn = Turn::k270}), (Rectangle{0, 0, {10, 20}}));
}

TEST(SharpFit, LeavesTheMarginFree) {
    EXPECT_EQ(fitted(10, 10, {.fit = Fit::kStretch, .margin = 7}), (Rectangle{7, 7, {186, 86}}));
    EXPECT_EQ(fitted(10, 10, {.margin = 7}, {.row = 5, .column = 6}),
              (Rectangle{13, 12, {10, 10}}));
}

TEST(SharpFit, AlignsInTheBox) {
    const auto at = [](Align align) {
        return fitted(20, 10, {.align = align, .margin = 2}, {.row = 10, .column = 30});
    };
    const Size size{20, 10};
    EXPECT_EQ(at(Align::kTopLeft), (Rectangle{32, 12, size}));
    EXPECT_EQ(at(Align::kTop), (Rectangle{105, 12, size}));
    EXPECT_EQ(at(Align::kTopRight), (Rectangle{178, 12, size}));
    EXPECT_EQ(at(Align::kLeft), (Rectangle{32, 50, size}));
    EXPECT_EQ(at(Align::kCentre), (Rectangle{105, 50, size}));
    EXPECT_EQ(at(Align::kRight), (Rectangle{178, 50, size}));
    EXPECT_EQ(at(Align::kBottomLeft), (Rectangle{32, 88, size}));
    EXPECT_EQ(at(Align::kBottom), (Rectangle{105, 88, size}));
    EXPECT_EQ(at(Align::kBottomRight), (Rectangle{178, 88, size}));
}

TEST(SharpFit, TurnsThePictureInPortraitWithTheTicket) {
    const Rows rows{
        "XX  X",
        "X    ",
    };
    const Rows ticket =
        printed(Ticket(smallTicket(Orientation::kPortrait)).picture(pixelsOf(rows), {3, 4}));
    EXPECT_EQ(cut(ticket, 3, 4, rows), rows);
    EXPECT_EQ(blackDots(ticket), blackDots(rows));
}

TEST(SharpFit, TurnsClockwise) {
    const Rows rows{
        "XX  X",
        "X    ",
    };
    const Rows turned{
        "XX", " X", "  ", "  ", " X",
    };
    const Rows ticket =
        printed(Ticket(smallTicket()).picture(pixelsOf(rows), {}, {.turn = Turn::k90}));
    EXPECT_EQ(cut(ticket, 0, 0, turned), turned);
}

TEST(SharpFit, EnlargesPicturesOfFewColoursDotForDot) {
    const Rows rows{
        "X ",
        " X",
    };
    const Rows ticket =
        printed(Ticket(smallTicket()).picture(pixelsOf(rows), {}, {.fit = Fit::kContain}));
    for (std::size_t row = 0; row < 100; ++row) {
        const bool isTop = row < 50;
        ASSERT_EQ(ticket[row].substr(0, 100),
                  std::string(50, isTop ? 'X' : ' ') + std::string(50, isTop ? ' ' : 'X'));
    }
}

// ---- Black and white ----------------------------------------------------------------------------

TEST(SharpTone, IsOfTheThreshold) {
    const auto dots = [](Byte value, Byte threshold) {
        DrawOptions options;
        options.blackAndWhite = BlackAndWhite::kThreshold;
        options.threshold = threshold;
        options.tone.dotGain = 0;
        return blackDots(printed(Ticket(smallTicket()).picture(grey(10, value), {}, options)));
    };
    EXPECT_EQ(dots(100, 101), 100U);
    EXPECT_EQ(dots(100, 100), 0U);
}

TEST(SharpTone, IsLighterForDotsThatGrow) {
    const auto dots = [](const Tone& tone) {
        return blackDots(
            printed(Ticket(smallTicket()).picture(grey(100, 128), {}, {.tone = tone})));
    };
    EXPECT_NEAR(static_cast<double>(dots({.dotGain = 0})), 5000, 200);
    EXPECT_LT(dots({}), 4800U);
    EXPECT_LT(dots({.brightness = 30}), dots({}));
    EXPECT_LT(dots({.gamma = 2}), dots({}));
}

TEST(SharpTone, HasTransparentPartsOnWhite) {
    platform::Picture picture = test::plainPicture(8, 8, 0, 0, 0);
    picture.pixels[0] = 0;
    Rows expected = test::allBlack(8, 8);
    expected[0][0] = ' ';
    const Rows ticket =
        printed(Ticket(smallTicket()).picture(std::make_shared<const platform::Picture>(picture)));
    EXPECT_EQ(cut(ticket, 0, 0, expected), expected);
}

// ---- Problems -----------------------------------------------------------------------------------

Lines problemsAt(Place place, const DrawOptions& options = {},
                 Orientation orientation = Orientation::kLandscape) {
    return told(encode(Ticket(smallTicket(orientation))
                           .picture(pixelsOf(test::allBlack(64, 32)), place, options)));
}

TEST(SharpPlaces, OutsideTheTicketAreProblems) {
    const std::string room = " has no room on the ticket of 200 x 100 dots";
    EXPECT_EQ(problemsAt({-1, 0}), Lines{"bad-place 0.0: row -1, column 0" + room});
    EXPECT_EQ(problemsAt({0, -1}), Lines{"bad-place 0.0: row 0, column -1" + room});
    EXPECT_EQ(problemsAt({100, 0}), Lines{"bad-place 0.0: row 100, column 0" + room});
    EXPECT_EQ(problemsAt({0, 200}), Lines{"bad-place 0.0: row 0, column 200" + room});
    EXPECT_EQ(problemsAt({99, 199}), Lines());
    constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
    for (const Place& place : {Place{kMax, 0}, Place{0, kMax}, Place{kMin, 0}, Place{0, kMin}})
        EXPECT_EQ(problemsAt(place, {.margin = kMax}).size(), 1U);
    EXPECT_EQ(problemsAt({0, 0}, {.margin = 50}),
              Lines{"bad-place 0.0: row 0, column 0 with a margin of 50 dots" + room});
    EXPECT_EQ(problemsAt({0, 0}, {.margin = -1}),
              Lines{"bad-setting 0.0: the margin is negative: give 0 dots or more"});
}

TEST(SharpPlaces, ThatThePrinterCannotNameAreProblems) {
    // In portrait the printer counts down towards the right edge, where it has row 0.
    const DrawOptions actual{.fit = Fit::kActual, .turn = Turn::k0};
    EXPECT_EQ(
        problemsAt({50, 0}, actual, Orientation::kPortrait),
        Lines{"bad-place 0.0: the picture in memory of 64 x 32 dots reaches beyond the ticket "
              "of 100 x 200 dots to where the printer has no rows or columns: let it be "
              "fitted"});
    EXPECT_EQ(problemsAt({36, 0}, actual, Orientation::kPortrait), Lines());
}

TEST(SharpOptions, HaveNoMeaningInTheClassicWay) {
    const Lines refused{
        "bad-setting 0.0: the classic way has no fit, turn, align, margin, threshold or tone: "
        "leave them out"};
    const Classic classic;
    EXPECT_EQ(problemsAt({}, {.fit = Fit::kCover, .classic = classic}), refused);
    EXPECT_EQ(problemsAt({}, {.turn = Turn::k0, .classic = classic}), refused);
    EXPECT_EQ(problemsAt({}, {.align = Align::kTop, .classic = classic}), refused);
    EXPECT_EQ(problemsAt({}, {.margin = 1, .classic = classic}), refused);
    EXPECT_EQ(problemsAt({}, {.threshold = 1, .classic = classic}), refused);
    EXPECT_EQ(problemsAt({}, {.tone = {.gamma = 2}, .classic = classic}), refused);
    EXPECT_EQ(
        problemsAt({}, {.page = 2, .blackAndWhite = BlackAndWhite::kThreshold, .classic = classic}),
        Lines());
}

// ---- Pages of an application's engine -----------------------------------------------------------

TEST(SharpPages, OfAnEngineArePicturesOfTheirSizeInInches) {
    EncodeOptions options;
    options.pageEngine = [](const Source&, std::int32_t) {
        platform::PdfPage page{0, 0, 36, 18, 0, 0, test::plainPicture(36, 18, 0, 0, 0)};
        return DrawnPage{{platform::PdfOutcome::kDrawn, page}, 1};
    };
    const auto sizeOf = [&options](const DrawOptions& drawing) {
        const auto job =
            encode(Ticket(smallTicket()).page(Source::bytes(Bytes(), "x"), {}, drawing), options);
        EXPECT_EQ(told(job), Lines());
        return job ? *job->elements()[0].size : Size{};
    };
    EXPECT_EQ(sizeOf({}), (Size{100, 50}));
    EXPECT_EQ(sizeOf({.fit = Fit::kContain}), (Size{200, 100}));
    EXPECT_EQ(sizeOf({.fit = Fit::kCover, .turn = Turn::k90}), (Size{200, 100}));
    EXPECT_EQ(sizeOf({.turn = Turn::k90}), (Size{50, 100}));
}

}  // namespace
}  // namespace tavio::printing
