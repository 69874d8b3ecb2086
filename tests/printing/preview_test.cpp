#include "tavio/printing/preview.h"

#include <cmath>

#include <gtest/gtest.h>

#include "printing/test_jobs.h"
#include "tavio/virtual-printer/printer.h"
#include "tavio/virtual-printer/ticket_png.h"

namespace tavio::printing {
namespace {

using test::jobOf;

const TicketSettings kSmall{.stock = Stock::ofInches(0.3, 0.2), .resolution = 200, .path = ""};

Preview previewOf(const Job& job, const PreviewOptions& options = {}) {
    auto result = preview(job, options);
    EXPECT_TRUE(result) << result.error().sentence;
    return result.value_or(Preview{});
}

// The one ticket as the virtual printer draws it, at this size.
virtual_printer::Ticket drawnAt(virtual_printer::TicketSize size, const Job& job) {
    virtual_printer::Ticket drawn(size);
    virtual_printer::PrinterSettings settings;
    settings.size = size;
    virtual_printer::Printer printer(
        settings, [&](const virtual_printer::FinishedTicket& one) { drawn = one.ticket; });
    printer.feed(job.bytes());
    printer.finish();
    return drawn;
}

void expectSameDots(const TicketPicture& ticket, const virtual_printer::Ticket& expected) {
    const platform::Picture& picture = ticket.picture;
    ASSERT_EQ(picture.width, expected.size().columns);
    ASSERT_EQ(picture.height, expected.size().rows);
    ASSERT_EQ(picture.orientation, 1);
    std::size_t index = 0;
    for (std::int32_t row = 0; row < picture.height; ++row) {
        for (std::int32_t column = 0; column < picture.width; ++column) {
            const UInt32 pixel = expected.isBlack(row, column) ? 0xFF000000 : 0xFFFFFFFF;
            ASSERT_EQ(picture.pixels.at(index++), pixel) << row << " " << column;
        }
    }
    Bytes png;
    std::string reason;
    ASSERT_TRUE(virtual_printer::encodeTicketPng(expected, {}, png, reason));
    EXPECT_EQ(ticket.png, png);
}

TEST(Preview, ShowsTheDotsOfTheJob) {
    const Job job = jobOf({"<RC1,1>AB", "<p>"}, kSmall);
    const Preview shown = previewOf(job);
    ASSERT_EQ(shown.tickets.size(), 1U);
    EXPECT_EQ(shown.ticketCount, 1U);
    const auto expected = drawnAt({.rows = 40, .columns = 60, .dpi = 200}, job);
    EXPECT_GT(expected.blackCount(), 0U);
    expectSameDots(shown.tickets.at(0), expected);
    EXPECT_TRUE(shown.problems.empty());
    EXPECT_EQ(shown.problemCount, 0U);
}

TEST(Preview, TurnsAPortraitTicketUpright) {
    TicketSettings settings = kSmall;
    settings.orientation = Orientation::kPortrait;
    const Job job = jobOf({"<PM><RC30,4>AB<p>"}, settings);
    const Preview shown = previewOf(job);
    ASSERT_EQ(shown.tickets.size(), 1U);
    const auto lying = drawnAt({.rows = 40, .columns = 60, .dpi = 200}, job);
    EXPECT_GT(lying.blackCount(), 0U);
    expectSameDots(shown.tickets.at(0), lying.turnedUpright());
    // In force also without a command.
    const Preview blank = previewOf(jobOf({"<p>"}, settings));
    EXPECT_EQ(blank.tickets.at(0).picture.width, 40);
    EXPECT_EQ(blank.tickets.at(0).picture.height, 60);
}

TEST(Preview, HasTheSizeOfEveryStockAtEveryResolution) {
    const PreviewOptions noPngs{.withPngs = false};
    const auto stocks = static_cast<std::int32_t>(virtual_printer::kTicketStocks.size());
    for (std::int32_t stock = 0; stock < stocks; ++stock) {
        const TicketSettings settings{.stock = Stock::ofIndex(stock), .resolution = 200};
        const auto size = virtual_printer::ticketSize(stock, 200);
        const Preview shown = previewOf(jobOf({"<p>"}, settings), noPngs);
        EXPECT_EQ(shown.tickets.at(0).picture.width, size->columns);
        EXPECT_EQ(shown.tickets.at(0).picture.height, size->rows);
    }
    for (const std::int32_t resolution : {200, 300, 600}) {
        // 1.006 inches are 201.2, 301.8 and 603.6 dots.
        const TicketSettings settings{.stock = Stock::ofInches(1.006, 0.5),
                                      .resolution = resolution};
        const Preview shown = previewOf(jobOf({"<p>"}, settings), noPngs);
        EXPECT_EQ(shown.tickets.at(0).picture.width,
                  static_cast<std::int32_t>(1.006 * resolution + 0.5));
        EXPECT_EQ(shown.tickets.at(0).picture.height, resolution / 2);
    }
}

TEST(Preview, TellsHowEachTicketEnds) {
    const Preview shown = previewOf(jobOf({"A<p>B<q>C"}, kSmall));
    ASSERT_EQ(shown.tickets.size(), 3U);
    EXPECT_EQ(shown.tickets.at(0).end, PaperEnd::kCut);
    EXPECT_EQ(shown.tickets.at(1).end, PaperEnd::kEjected);
    EXPECT_EQ(shown.tickets.at(2).end, PaperEnd::kJobEnded);
    EXPECT_NE(shown.tickets.at(0).png, shown.tickets.at(1).png);
}

TEST(Preview, ShowsABlankTicketForAJobWithoutBytes) {
    const Preview shown = previewOf(jobOf({}, kSmall));
    EXPECT_EQ(shown.ticketCount, 1U);
    EXPECT_EQ(shown.tickets.size(), 1U);
}

TEST(Preview, CountsTheTicketsThatItDoesNotShow) {
    const Preview shown = previewOf(jobOf({"A<p>B<p>C<p>"}, kSmall), {.maxTickets = 2});
    EXPECT_EQ(shown.tickets.size(), 2U);
    EXPECT_EQ(shown.ticketCount, 3U);
}

TEST(Preview, LeavesOutWhatIsNotWanted) {
    const Job job = jobOf({"A<p>"}, kSmall);
    const Preview pictures = previewOf(job, {.withPngs = false});
    EXPECT_TRUE(pictures.tickets.at(0).png.empty());
    EXPECT_EQ(pictures.tickets.at(0).picture.pixels.size(), 2'400U);
    const Preview pngs = previewOf(job, {.withPictures = false});
    EXPECT_FALSE(pngs.tickets.at(0).png.empty());
    EXPECT_TRUE(pngs.tickets.at(0).picture.pixels.empty());
    EXPECT_EQ(pngs.tickets.at(0).picture.width, 0);
}

TEST(Preview, TellsTheProblemsWithTheStream) {
    const Preview shown = previewOf(jobOf({"A<p>", "<XX9>"}, kSmall));
    ASSERT_EQ(shown.problems.size(), 1U);
    EXPECT_EQ(shown.problemCount, 1U);
    EXPECT_EQ(shown.problems.at(0).offset, 4U);
    EXPECT_NE(shown.problems.at(0).sentence, "");
    std::string many;
    for (int i = 0; i < 1'001; ++i) many += "<XX9>";
    const Preview of1001 = previewOf(jobOf({many}, kSmall));
    EXPECT_EQ(of1001.problems.size(), 1'000U);
    EXPECT_EQ(of1001.problemCount, 1'001U);
}

TEST(Preview, RefusesATicketThatIsTooLarge) {
    for (const TicketSettings& settings :
         {TicketSettings{.stock = Stock::ofInches(27.4, 1), .resolution = 600},
          TicketSettings{.stock = Stock::ofInches(1, 1e9), .resolution = 200},
          TicketSettings{.stock = Stock::ofInches(1e-9, 1), .resolution = 200},
          TicketSettings{.stock = Stock::ofInches(-1, std::nan("")), .resolution = 200},
          TicketSettings{.stock = Stock::ofIndex(9)}, TicketSettings{.resolution = 0}}) {
        const auto result = preview(jobOf({"A<p>"}, settings));
        ASSERT_FALSE(result);
        EXPECT_EQ(result.error().kind, ProblemKind::kTooLarge);
        EXPECT_EQ(result.error().sentence,
                  "a ticket of this size cannot be drawn: it has 1 to 16384 dots a side");
    }
    EXPECT_TRUE(preview(jobOf({}, {.stock = Stock::ofInches(27, 0.1), .resolution = 600})));
}

}  // namespace
}  // namespace tavio::printing
