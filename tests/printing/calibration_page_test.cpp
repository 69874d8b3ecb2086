// The page that tells a person how a printer prints.

#include "tavio/printing/calibration_page.h"

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "printing/drawn_job.h"
#include "printing/told.h"
#include "support/literal_halftone.h"
#include "support/random_dots.h"
#include "tavio/printing/job.h"

namespace tavio::printing {
namespace {

using test::Lines;
using test::told;

std::vector<TicketSettings> allSettings() {
    std::vector<TicketSettings> all;
    for (std::int32_t stock = 0; stock < settings::kStockCount; ++stock)
        for (const std::int32_t resolution : {200, 300, 600})
            for (const Orientation orientation : {Orientation::kLandscape, Orientation::kPortrait})
                all.push_back({.stock = Stock::ofIndex(stock),
                               .resolution = resolution,
                               .orientation = orientation});
    return all;
}

std::string nameOf(const TicketSettings& settings) {
    return "stock " + std::to_string(settings.stock.index()) + ", " +
           std::to_string(settings.resolution) + " dpi, " +
           (settings.orientation == Orientation::kLandscape ? "landscape" : "portrait");
}

Expected<Job, Problems> encodedPage(const TicketSettings& settings,
                                    const Calibration& calibration = {}) {
    const auto page = calibrationPage(settings, calibration);
    if (!page) return tl::unexpected(Problems{page.error()});
    EncodeOptions options;
    options.calibration = calibration;
    return encode(*page, options);
}

Lines warningsOf(const Job& job) {
    std::vector<Warning> warnings = job.warnings();
    std::erase_if(warnings,
                  [](const Warning& each) { return each.kind == WarningKind::kSmallModule; });
    return told(warnings);
}

TEST(CalibrationPage, FitsEveryStockResolutionAndOrientation) {
    for (const TicketSettings& settings : allSettings()) {
        SCOPED_TRACE(nameOf(settings));
        const auto job = encodedPage(settings);
        ASSERT_EQ(told(job), Lines());
        EXPECT_EQ(warningsOf(*job), Lines());
    }
}

// The upright ticket as the printer prints it.
sharp::Dots printedDots(const Job& job) {
    const test::DrawnJob drawn = test::drawn(job);
    EXPECT_EQ(drawn.problems, Lines());
    const virtual_printer::Ticket& ticket = drawn.tickets.at(0);
    return test::dotsWhere(
        ticket.size().columns, ticket.size().rows,
        [&ticket](std::int32_t column, std::int32_t row) { return ticket.isBlack(row, column); });
}

TEST(CalibrationPage, HasMarksAtTheOutermostDots) {
    for (const TicketSettings& settings : allSettings()) {
        if (settings.resolution != 200) continue;
        SCOPED_TRACE(nameOf(settings));
        const auto job = encodedPage(settings);
        ASSERT_TRUE(job);
        const sharp::Dots dots = printedDots(*job);
        const Size size = *ticketSize(settings);
        for (std::int32_t at = 0; at < 30; ++at)
            for (const std::int32_t x : {at, size.width - 1 - at})
                for (const std::int32_t y : {0, size.height - 1}) ASSERT_TRUE(dots.isBlack(x, y));
        for (std::int32_t at = 0; at < 30; ++at)
            for (const std::int32_t x : {0, size.width - 1})
                for (const std::int32_t y : {at, size.height - 1 - at})
                    ASSERT_TRUE(dots.isBlack(x, y));
    }
}

TEST(CalibrationPage, HasSlantedLinesThatLieOneDotFurtherInwardsEveryTenDots) {
    const auto job = encodedPage({});
    ASSERT_TRUE(job);
    const sharp::Dots dots = printedDots(*job);
    for (std::int32_t at = 0; at < 100; ++at)
        for (std::int32_t distance = 0; distance < 20; ++distance) {
            const bool isLine = distance == at / 10;
            ASSERT_EQ(dots.isBlack(100 + at, distance), isLine) << at << ", " << distance;
            ASSERT_EQ(dots.isBlack(100 + at, 599 - distance), isLine);
            ASSERT_EQ(dots.isBlack(distance, 100 + at), isLine);
            ASSERT_EQ(dots.isBlack(1649 - distance, 100 + at), isLine);
        }
}

// With the calibration that it is printed for, nothing lies where the printer has no rows or columns.
TEST(CalibrationPage, FitsWhatACalibratedPrinterCanPrint) {
    for (const Calibration& calibration :
         {Calibration{.tone = 7, .right = 3, .down = -2, .size = Size{380, 180}},
          Calibration{.right = -9, .down = -11}, Calibration{.right = -1, .down = 8}})
        for (const TicketSettings& settings : allSettings()) {
            if (settings.resolution != 200) continue;
            SCOPED_TRACE(nameOf(settings));
            const auto job = encodedPage(settings, calibration);
            ASSERT_EQ(told(job), Lines());
            EXPECT_EQ(warningsOf(*job), Lines());
        }
}

TEST(CalibrationPage, OfAnOffsetBeginsWhereThePrinterDoes) {
    for (const Orientation orientation : {Orientation::kLandscape, Orientation::kPortrait}) {
        const auto job = encodedPage({.orientation = orientation}, {.right = -7, .down = -5});
        ASSERT_TRUE(job);
        const sharp::Dots dots = printedDots(*job);
        const bool isLandscape = orientation == Orientation::kLandscape;
        // The printer's row 0 is the right edge of an upright ticket in portrait.
        EXPECT_TRUE(dots.isBlack(isLandscape ? 0 : dots.width - 1, 0));
    }
}

// Seen from far away on a printer whose dots grow as much, a tone looks like the stripes beside it.
TEST(CalibrationPage, HasTonesThatVanishBetweenStripesIfTheyAreRight) {
    const auto job = encodedPage({});
    ASSERT_TRUE(job);
    const sharp::Dots dots = printedDots(*job);
    std::vector<test::DotRange> tones;
    std::vector<test::DotRange> stripes;
    for (const EncodedElement& element : job->elements()) {
        const auto left = static_cast<std::int32_t>(element.rectangle->left);
        const auto top = static_cast<std::int32_t>(element.rectangle->top);
        if (element.size == Size{60, 60}) tones.push_back({left + 4, top + 8, left + 56, top + 56});
        if (element.size == Size{30, 60})
            stripes.push_back({left + 4, top + 8, left + 26, top + 56});
    }
    ASSERT_EQ(tones.size(), 10U);
    ASSERT_EQ(stripes.size(), 11U);
    for (const int printer : {4, 5, 7, 9}) {
        const double width = 1 + 0.05 * printer;
        const double pattern = test::whiteShare(dots, stripes.at(0), width);
        for (int tone = 0; tone < 10; ++tone) {
            const double off =
                test::whiteShare(dots, tones.at(static_cast<std::size_t>(tone)), width) - pattern;
            SCOPED_TRACE(testing::Message() << "printer " << printer << ", tone " << tone);
            if (tone == printer) {
                EXPECT_NEAR(off, 0, 0.012);
            } else if (tone < printer - 1) {
                EXPECT_LT(off, -0.02);
            } else if (tone > printer + 1) {
                EXPECT_GT(off, 0.02);
            }
        }
    }
}

TEST(CalibrationPage, OfSettingsThatNoTicketCanHaveIsAProblem) {
    const auto page = calibrationPage({.resolution = 150});
    ASSERT_FALSE(page);
    EXPECT_EQ(page.error().kind, ProblemKind::kBadSetting);
    EXPECT_FALSE(calibrationPage({}, {.tone = 10}));
}

TEST(CalibrationPage, OfSmallTicketsHasWhatThereIsRoomFor) {
    for (int hundredths = 1; hundredths < 160; ++hundredths) {
        SCOPED_TRACE(hundredths);
        for (const auto& [width, height] : {std::pair{1.0, 1.0}, std::pair{1.0, 0.3}}) {
            const Stock stock =
                Stock::ofInches(width * hundredths / 100, height * hundredths / 100 + 0.01);
            const auto job = encodedPage({.stock = stock, .resolution = 200});
            ASSERT_EQ(told(job), Lines());
            EXPECT_EQ(warningsOf(*job), Lines());
        }
    }
}

}  // namespace
}  // namespace tavio::printing
