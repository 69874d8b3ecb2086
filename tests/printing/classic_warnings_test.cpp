// Every kind of warning of the classic way with its exact count and sentence.

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
using test::Rows;
using test::told;

const DrawOptions kClassic{.classic = Classic{}};

// 200 x 100 dots in landscape, 100 x 200 in portrait.
TicketSettings smallTicket(Orientation orientation = Orientation::kLandscape) {
    return {.stock = Stock::ofInches(1, 0.5), .resolution = 200, .orientation = orientation};
}

std::shared_ptr<const platform::Picture> pixelsOf(const Rows& rows) {
    return std::make_shared<const platform::Picture>(test::pictureOf(rows));
}

// The warnings of an encoded ticket; a test failure if it has problems.
Lines warningsOf(const Ticket& ticket) {
    const auto job = encode(ticket);
    EXPECT_EQ(told(job), Lines());
    return job ? told(job->warnings()) : Lines();
}

// ---- Beyond the ticket --------------------------------------------------------------------------

Lines warningsAt(Orientation orientation, Place place) {
    Ticket ticket(smallTicket(orientation));
    // In portrait a picture is printed with its sides exchanged.
    const bool isLandscape = orientation == Orientation::kLandscape;
    ticket.picture(pixelsOf(isLandscape ? test::allBlack(64, 32) : test::allBlack(32, 64)), place,
                   kClassic);
    return warningsOf(ticket);
}

Lines beyond(int count, Place place, const std::string& ticket) {
    return {"beyond-ticket 0.0 (" + std::to_string(count) +
            "): the picture of 64 x 32 dots at row " + std::to_string(place.row) + ", column " +
            std::to_string(place.column) + " reaches beyond the ticket of " + ticket + " dots"};
}

TEST(Warnings, TellByHowManyDotsAPictureReachesBeyondTheTicketInLandscape) {
    constexpr Orientation kTurn = Orientation::kLandscape;
    EXPECT_EQ(warningsAt(kTurn, {0, 0}), Lines());
    EXPECT_EQ(warningsAt(kTurn, {68, 136}), Lines());
    for (const auto& [place, count] : {std::pair{Place{0, -1}, 1},
                                       {Place{-9, 0}, 9},
                                       {Place{0, 137}, 1},
                                       {Place{75, 0}, 7},
                                       {Place{-3, 138}, 3}})
        EXPECT_EQ(warningsAt(kTurn, place), beyond(count, place, "200 x 100"));
}

TEST(Warnings, TellByHowManyDotsAPictureReachesBeyondTheTicketInPortrait) {
    constexpr Orientation kTurn = Orientation::kPortrait;
    EXPECT_EQ(warningsAt(kTurn, {0, 0}), Lines());
    EXPECT_EQ(warningsAt(kTurn, {36, 168}), Lines());
    for (const auto& [place, count] : {std::pair{Place{-1, 0}, 1},
                                       {Place{0, -9}, 9},
                                       {Place{37, 0}, 1},
                                       {Place{0, 175}, 7},
                                       {Place{38, -3}, 3}})
        EXPECT_EQ(warningsAt(kTurn, place), beyond(count, place, "100 x 200"));
}

TEST(Warnings, TellDistancesThatNeedMoreThan32Bits) {
    constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
    const auto job = encode(Ticket(smallTicket())
                                .picture(pixelsOf(test::allBlack(64, 32)), {0, kMax}, kClassic)
                                .picture(pixelsOf(test::allBlack(64, 32)), {kMin, 0}, kClassic));
    ASSERT_TRUE(job);
    ASSERT_EQ(job->warnings().size(), 2U);
    EXPECT_EQ(job->warnings()[0].count, std::int64_t{kMax} + 64 - 200);
    EXPECT_EQ(job->warnings()[1].count, -std::int64_t{kMin});
}

TEST(Warnings, TellWhatIsLargerThanTheTicket) {
    const auto wide = pixelsOf(test::allBlack(224, 32));
    EXPECT_EQ(
        warningsOf(Ticket(smallTicket()).picture(wide, {}, kClassic).storeLogo(7, wide, kClassic)),
        (Lines{"beyond-ticket 0.0 (24): the picture of 224 x 32 dots is larger than the ticket "
               "of 200 x 100 dots",
               "beyond-ticket 0.1 (24): the picture of 224 x 32 dots is larger than the ticket "
               "of 200 x 100 dots",
               "rows-lost 0.1 (8): 8 rows with black dots are lost: the top 8 rows of a logo "
               "are not stored, nor rows at the bottom that do not fill 8"}));
}

// ---- Rows and columns ---------------------------------------------------------------------------

TEST(Warnings, TellThatTooFewRowsPrintNothing) {
    const auto rows = [](std::size_t height) { return pixelsOf(test::allBlack(32, height)); };
    EXPECT_EQ(warningsOf(Ticket().picture(rows(7), {}, kClassic).storeLogo(1, rows(15), kClassic)),
              (Lines{"few-rows 0.0 (0): the picture is 32 x 7 dots: of fewer than 8 rows nothing "
                     "prints",
                     "few-rows 0.1 (0): the picture is 32 x 15 dots: of fewer than 16 rows nothing "
                     "is stored as a logo"}));
    EXPECT_EQ(warningsOf(Ticket().picture(rows(8), {}, kClassic)), Lines());
}

TEST(Warnings, TellRowsWithBlackDotsThatDoNotFillABand) {
    Rows rows = test::allBlack(32, 15);
    const std::string why = " lost: rows at the bottom that do not fill 8 are left out";
    EXPECT_EQ(warningsOf(Ticket().picture(pixelsOf(rows), {}, kClassic)),
              Lines{"rows-lost 0.0 (7): 7 rows with black dots are" + why});
    for (std::size_t row = 8; row < 15; ++row) rows[row] = std::string(32, ' ');
    EXPECT_EQ(warningsOf(Ticket().picture(pixelsOf(rows), {}, kClassic)), Lines());
    rows[14][30] = 'X';
    EXPECT_EQ(warningsOf(Ticket().picture(pixelsOf(rows), {}, kClassic)),
              Lines{"rows-lost 0.0 (1): 1 row with black dots is" + why});
}

TEST(Warnings, TellColumnsThatPaddingBlanks) {
    EXPECT_EQ(
        warningsOf(Ticket().picture(pixelsOf(test::allBlack(24, 8)), {}, kClassic)),
        Lines{"columns-lost 0.0 (4): 4 columns with black dots at the right are lost: make the "
              "width a multiple of 32"});
    Rows rows = test::allBlack(20, 8);
    for (std::string& row : rows) row.append("   X");
    EXPECT_EQ(warningsOf(Ticket().picture(pixelsOf(rows), {}, kClassic)),
              Lines{"columns-lost 0.0 (1): 1 column with black dots at the right is lost: make the "
                    "width a multiple of 32"});
}

// ---- Losses and their twin ----------------------------------------------------------------------

constexpr std::int32_t kLogo = 7;

Ticket ticketOf(const Rows& rows, bool isLogo, const DrawOptions& options) {
    Ticket ticket({.stock = Stock::ofInches(1, 1), .resolution = 200});
    if (isLogo)
        ticket.storeLogo(kLogo, pixelsOf(rows), options).logo(kLogo);
    else
        ticket.picture(pixelsOf(rows), {}, options);
    return ticket;
}

Job jobOf(const Rows& rows, bool isLogo, const DrawOptions& options) {
    return *encode(ticketOf(rows, isLogo, options));
}

// The bits that packing makes of a row's dots: each first dot of eight twice, each eighth never.
std::string packed(const std::string& dots) {
    std::string bits((dots.size() + 31) / 32 * 32, ' ');
    for (std::size_t bit = 0; bit < bits.size(); ++bit) {
        const std::size_t dot = bit % 8 == 0 ? bit : bit - 1;
        if (dot < dots.size()) bits[bit] = dots[dot];
    }
    return bits;
}

Rows packed(Rows rows) {
    for (std::string& row : rows) row = packed(row);
    return rows;
}

// The bits that a printer makes black if all of them are to be.
Rows printable(std::size_t width, std::size_t height, bool isLogo) {
    const auto drawn = test::drawn(jobOf(test::allBlack(width, height), isLogo, kClassic));
    Rows rows = packed(Rows(height, std::string(width, ' ')));
    for (std::size_t row = 0; row < height; ++row)
        for (std::size_t column = 0; column < rows[row].size(); ++column)
            if (drawn.tickets.at(0).isBlack(static_cast<int>(row), static_cast<int>(column)))
                rows[row][column] = 'X';
    return rows;
}

Rows randomRows(test::Random& random, std::size_t width, std::size_t height) {
    const int percent = test::chance(random, 50) ? test::between(random, 0, 5) : 60;
    Rows rows(height, std::string(width, ' '));
    for (std::string& row : rows)
        for (char& dot : row) dot = test::chance(random, percent) ? 'X' : ' ';
    return rows;
}

std::int64_t countOf(const Job& job, WarningKind kind) {
    for (const Warning& warning : job.warnings())
        if (warning.kind == kind) return warning.count;
    return 0;
}

struct Lost {
    std::int64_t rows = 0;
    std::int64_t columns = 0;
};

Lost lostOf(const Rows& bits, const Rows& printable, bool isLogo) {
    Lost lost;
    std::set<std::size_t> columns;
    for (std::size_t row = 0; row < bits.size(); ++row) {
        const bool isInBand = row >= (isLogo ? 8U : 0U) && row < bits.size() / 8 * 8;
        lost.rows += !isInBand && bits[row].find('X') != std::string::npos;
        for (std::size_t column = 0; isInBand && column < bits[row].size(); ++column)
            if (bits[row][column] == 'X' && printable[row][column] == ' ') columns.insert(column);
    }
    lost.columns = static_cast<std::int64_t>(columns.size());
    return lost;
}

// The picture without the dots of which no bit is printed.
Rows withoutLost(Rows rows, const Rows& printable) {
    for (std::size_t row = 0; row < rows.size(); ++row) {
        for (std::size_t dot = 0; dot < rows[row].size(); ++dot) {
            std::string one(rows[row].size(), ' ');
            one[dot] = 'X';
            const std::string bits = packed(one);
            bool isPrinted = false;
            for (std::size_t bit = 0; bit < bits.size(); ++bit)
                isPrinted = isPrinted || (bits[bit] == 'X' && printable[row][bit] == 'X');
            if (!isPrinted) rows[row][dot] = ' ';
        }
    }
    return rows;
}

// Returns false if there is no dot.
bool whitenSomeDot(test::Random& random, Rows& rows) {
    std::vector<char*> dots;
    for (std::string& row : rows)
        for (char& dot : row)
            if (dot == 'X') dots.push_back(&dot);
    if (dots.empty()) return false;
    *dots[random() % dots.size()] = ' ';
    return true;
}

TEST(Losses, AreExactlyTheDotsThatMakeNoDifference) {
    for (unsigned seed = 0; seed < 600; ++seed) {
        test::Random random(seed);
        const bool isLogo = test::chance(random, 50);
        const auto width = static_cast<std::size_t>(test::between(random, 1, 100));
        const auto height = static_cast<std::size_t>(test::between(random, isLogo ? 16 : 8, 40));
        SCOPED_TRACE(testing::Message() << "seed " << seed << ": " << width << " x " << height
                                        << (isLogo ? ", logo" : ""));
        DrawOptions options = kClassic;
        if (test::chance(random, 50)) options.blackAndWhite = BlackAndWhite::kThreshold;
        Rows rows = randomRows(random, width, height);
        if (options.blackAndWhite == BlackAndWhite::kThreshold) rows[0].assign(width, ' ');

        const Rows printed = printable(width, height, isLogo);
        const Lost lost = lostOf(packed(rows), printed, isLogo);
        const Job job = jobOf(rows, isLogo, options);
        ASSERT_EQ(countOf(job, WarningKind::kRowsLost), lost.rows);
        ASSERT_EQ(countOf(job, WarningKind::kColumnsLost), lost.columns);
        Rows rest = withoutLost(rows, printed);
        ASSERT_TRUE(std::ranges::equal(jobOf(rest, isLogo, options).bytes(), job.bytes()));
        if (whitenSomeDot(random, rest)) {
            ASSERT_FALSE(std::ranges::equal(jobOf(rest, isLogo, options).bytes(), job.bytes()));
        }
    }
}

// ---- Transparent parts --------------------------------------------------------------------------

TEST(Warnings, TellTransparentPartsOfAFileAndOfPixels) {
    pictures::samples::PngPlan plan;
    plan.width = 32;
    plan.height = 8;
    plan.samples.assign(std::size_t{32} * 8 * 4, 255);
    Ticket opaque;
    opaque.picture(Source::bytes(pictures::samples::pngFile(plan)), {}, kClassic);
    EXPECT_EQ(warningsOf(opaque), Lines()) << "RGBA, but opaque";

    plan.samples.back() = 254;
    platform::Picture pixels = test::plainPicture(32, 8, 255, 255, 255);
    pixels.pixels[100] = 0xFEFEFEFE;
    Ticket ticket;
    ticket.picture(Source::bytes(pictures::samples::pngFile(plan)), {}, kClassic)
        .picture(std::make_shared<const platform::Picture>(pixels), {}, kClassic);
    const std::string what =
        " (0): the picture has transparent parts, which print black: put it on white";
    EXPECT_EQ(warningsOf(ticket),
              (Lines{"transparent-parts 0.0" + what, "transparent-parts 0.1" + what}));
}

// Its rows are decoded on another thread.
TEST(Warnings, TellATransparentPixelAtTheEndOfALargePicture) {
    platform::Picture pixels = test::plainPicture(1024, 512, 255, 255, 255);
    pixels.pixels.back() = 0xFEFEFEFE;
    Ticket ticket({.stock = Stock::receipt()});
    ticket.picture(std::make_shared<const platform::Picture>(pixels), {},
                   {.classic = Classic{.scaled = true}});
    EXPECT_EQ(warningsOf(ticket),
              Lines{"transparent-parts 0.0 (0): the picture has transparent parts, which print "
                    "black: put it on white"});
}

// ---- Documents of several pages -----------------------------------------------------------------

TEST(Warnings, TellPagesOfEachDocumentInTheOrderOfPrinting) {
    EncodeOptions options;
    options.pageEngine = [](const Source& document, std::int32_t page) {
        platform::PdfPage drawn{0, 0, 40, 40, 0, 0, test::plainPicture(40, 40, 0, 0, 0)};
        const std::int32_t pages = document.name() == "one" ? 1 : 3;
        return DrawnPage{{platform::PdfOutcome::kDrawn, drawn}, std::max(pages, page)};
    };
    const auto pdf = [](const std::string& name) { return Source::bytes(Bytes(), name); };
    const Source second = pdf("same");
    std::vector<Ticket> tickets(2);
    tickets[0].page(pdf("one")).page(pdf("z")).page(pdf("same"), {}, {.page = 2});
    tickets[1].page(second).page(second, {}, {.page = 3}).page(second).page(pdf("a"));
    const auto job = encode(tickets, options);
    ASSERT_TRUE(job);
    Lines lines;
    for (const std::string& line : told(job->warnings()))
        if (line.starts_with("more-pages")) lines.push_back(line);
    EXPECT_EQ(lines, (Lines{"more-pages 0.1 (2): z has 3 pages, of which 2 are not printed",
                            "more-pages 0.2 (2): same has 3 pages, of which 2 are not printed",
                            "more-pages 1.0 (1): same has 3 pages, of which 1 is not printed",
                            "more-pages 1.3 (2): a has 3 pages, of which 2 are not printed"}));
}

}  // namespace
}  // namespace tavio::printing
