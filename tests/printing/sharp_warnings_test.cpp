// The warnings of pages and pictures drawn the sharp way. Codes: find_codes_test.cpp; text: pages_test.cpp.

#include <string>

#include <gtest/gtest.h>

#include "printing/told.h"
#include "support/bitmaps.h"
#include "tavio/printing/job.h"

namespace tavio::printing {
namespace {

using test::Lines;
using test::Rows;
using test::told;

// 200 x 100 dots.
TicketSettings smallTicket() {
    return {.stock = Stock::ofInches(1, 0.5), .resolution = 200};
}

Lines warningsOf(const Ticket& ticket, const EncodeOptions& options = {}) {
    const auto job = encode(ticket, options);
    EXPECT_EQ(told(job), Lines());
    return job ? told(job->warnings()) : Lines();
}

Lines warningsOf(const Rows& rows, Place place = {}, const DrawOptions& drawing = {}) {
    return warningsOf(Ticket(smallTicket())
                          .picture(std::make_shared<const platform::Picture>(test::pictureOf(rows)),
                                   place, drawing));
}

// Bars and spaces of one or two modules, as linear codes have them.
Rows bars(std::size_t module, std::size_t height) {
    std::string row;
    for (int bar = 0; bar < 30; ++bar) {
        row.append(module * (bar % 3 == 0 ? 2 : 1), 'X');
        row.append(module * (bar % 4 == 1 ? 2 : 1), ' ');
    }
    const std::string margin(10 * module, ' ');
    return Rows(height, margin + row + margin);
}

TEST(SharpWarnings, AreNoneOfWhatIsPrintedWhole) {
    for (const int width : {1, 24, 33, 200})
        for (const int height : {1, 7, 12, 100})
            EXPECT_EQ(warningsOf(test::allBlack(static_cast<std::size_t>(width),
                                                static_cast<std::size_t>(height))),
                      Lines());
}

TEST(SharpWarnings, TellWhatReachesBeyondTheTicketInItsActualSize) {
    EXPECT_EQ(
        warningsOf(test::allBlack(224, 32), {}, {.fit = Fit::kActual}),
        Lines{"beyond-ticket 0.0 (24): the picture of 224 x 32 dots is larger than the ticket "
              "of 200 x 100 dots"});
    EXPECT_EQ(
        warningsOf(test::allBlack(64, 32), {70, 0}, {.fit = Fit::kActual}),
        Lines{"beyond-ticket 0.0 (2): the picture of 64 x 32 dots at row 70, column 0 reaches "
              "beyond the ticket of 200 x 100 dots"});
    EXPECT_EQ(warningsOf(test::allBlack(224, 32)), Lines()) << "fitted";
}

TEST(SharpWarnings, TellACodeOfSmallModules) {
    EXPECT_EQ(warningsOf(bars(2, 60)),
              Lines{"small-module 0.0 (20): the picture in memory has a code with modules of 2.0 "
                    "dots, which may not scan: make it larger, 3 dots or more"});
    const auto wide = std::make_shared<const platform::Picture>(test::pictureOf(bars(3, 60)));
    EXPECT_EQ(warningsOf(Ticket().picture(wide)), Lines());
}

TEST(SharpWarnings, TellAPageThatIsPrintedMuchSmallerThanItIs) {
    EncodeOptions options;
    options.pageEngine = [](const Source&, std::int32_t page) {
        const std::int32_t width = page == 1 ? 106 : 102;  // 0.679 and 0.706 of an inch
        platform::PdfPage drawn{
            0, 0, double(width), 18, 0, 0, test::plainPicture(width, 18, 0, 0, 0)};
        return DrawnPage{{platform::PdfOutcome::kDrawn, drawn}, 1};
    };
    const Source document = Source::bytes(Bytes(), "terms.pdf");
    EXPECT_EQ(
        warningsOf(Ticket(smallTicket()).page(document), options),
        Lines{"shrunk-page 0.0 (67): terms.pdf is printed at 67 % of its size: choose a larger "
              "stock, or a part of the page"});
    EXPECT_EQ(warningsOf(Ticket(smallTicket()).page(document, {}, {.page = 2}), options), Lines());
}

}  // namespace
}  // namespace tavio::printing
