#include "TavioIpadSDK/intake/pdf_to_bmp.h"

#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "TavioIpadSDK/imaging/state.h"
#include "TavioIpadSDK/intake/send_file.h"
#include "TavioIpadSDK/platform/pdf_page.h"
#include "TavioIpadSDK/session/session.h"
#include "TavioIpadSDK/settings/job.h"
#include "TavioIpadSDK/settings/settings.h"
#include "intake/printed_picture.h"
#include "support/fresh_state.h"

namespace tavio::intake {
namespace {

using platform::PdfOutcome;
using platform::PdfPage;
using platform::PdfPageResult;
using test::Rows;
using test::transport;

constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();

// The page of a crop box, drawn in one colour over all the pixels that the box touches.
PdfPage pageOf(double x, double y, double width, double height, unsigned grey) {
    const auto left = static_cast<std::int32_t>(std::floor(x));
    const auto top = static_cast<std::int32_t>(std::floor(-y));
    const auto columns = static_cast<std::int32_t>(std::ceil(x + width)) - left;
    const auto rows = static_cast<std::int32_t>(std::ceil(height - y)) - top;
    return {x, y, width, height, left, top, test::plainPicture(columns, rows, grey, grey, grey)};
}

class PdfPrinting : public test::FreshState {
  protected:
    PdfPrinting() { Mode = "BT"; }

    // Prints `page`; returns what PdfToBmp returned.
    static bool print(const PdfPage& page) {
        platform::setPdfPageSource([&page](const URL&) {
            return PdfPageResult{PdfOutcome::kDrawn, page};
        });
        const bool result = PdfToBmp(URL::fromText("file:///a.pdf"));
        platform::setPdfPageSource({});
        return result;
    }

    void expectRefused() {
        EXPECT_EQ(noticeMessages(), std::vector<std::string>{test::kNoPictureNotice});
        EXPECT_TRUE(transport().calls.empty());
        EXPECT_EQ(test::printedSize(), "0 x 0");
        notices.clear();
    }
};

// ---- Transport ----------------------------------------------------------------------------------

TEST_F(PdfPrinting, IsOneDataWriteOverWiFiWhenItIsActiveAndOverBluetoothOtherwise) {
    for (const auto& [mode, write] : {std::pair{"WF", "Write_WF_Data"},
                                      {"BT", "Write_BT_Data"},
                                      {"", "Write_BT_Data"},
                                      {"??", "Write_BT_Data"}}) {
        Mode = std::string(mode);
        transport().calls.clear();
        EXPECT_TRUE(print(pageOf(0, 0, 12, 12, 255)));
        EXPECT_EQ(transport().operations(), std::vector<std::string>{write}) << mode;
    }
}

// ---- Size ---------------------------------------------------------------------------------------

TEST_F(PdfPrinting, StretchesThePageToItsSizeInDots) {
    ImageDithered = false;
    EXPECT_TRUE(print(pageOf(0, 0, 612, 792, 255)));
    EXPECT_EQ(test::printedSize(), "2550 x 3300");
    print(pageOf(0, 0, 595, 842, 255));
    EXPECT_EQ(test::printedSize(), "2479 x 3508");
    print(pageOf(0, 0, 595.276, 841.89, 255));
    EXPECT_EQ(test::printedSize(), "2480 x 3507");
    EXPECT_TRUE(notices.empty());
}

TEST_F(PdfPrinting, SwapsTheSizeInEveryOrientationButLandscape) {
    ImageDithered = false;
    for (const char* orientation : {"<PM>", "", "<lm>"}) {
        PrinterOrientation = orientation;
        EXPECT_TRUE(print(pageOf(0, 0, 612, 792, 255)));
        EXPECT_EQ(test::printedSize(), "3300 x 2550") << orientation;
    }
}

TEST_F(PdfPrinting, GivesEveryScaledPageTheStocksSize) {
    ImageScaled = true;
    for (const double side : {1.0, 100.0, 612.0}) {
        PrinterOrientation = "<LM>";
        EXPECT_TRUE(print(pageOf(0, 0, side, side, 255)));
        EXPECT_EQ(test::printedSize(), "1650 x 600");
        PrinterOrientation = "<PM>";
        EXPECT_TRUE(print(pageOf(0, 0, side, side, 255)));
        EXPECT_EQ(test::printedSize(), "600 x 1650");
    }
}

// ---- Canvas -------------------------------------------------------------------------------------

TEST_F(PdfPrinting, PrintsWhatThePageShowsAndNotTurned) {
    PrinterResolution = 72;
    for (const bool dithered : {true, false}) {
        ImageDithered = dithered;
        const Rows rows = {"        ", "X       ", "XX     X", "        "};
        print({0, 0, 8, 4, 0, 0, test::pictureOf(rows)});
        EXPECT_EQ(test::printedRows(), rows);
    }
}

TEST_F(PdfPrinting, ShiftsAPageWhoseCropBoxBeginsElsewhereAndLeavesTheStripBlack) {
    PrinterResolution = 72;
    for (const bool dithered : {true, false}) {
        SCOPED_TRACE(dithered);
        ImageDithered = dithered;
        const PdfPage page = pageOf(18, 18, 576, 756, 255);
        ASSERT_EQ(page.left, 18);
        ASSERT_EQ(page.top, -18);
        EXPECT_TRUE(print(page));
        const std::string shifted = std::string(18, 'X') + std::string(558, ' ');
        Rows expected(738, shifted);
        expected.resize(756, std::string(576, 'X'));
        if (!dithered) expected[0] = std::string(576, ' ');  // the threshold's blank top row
        EXPECT_TRUE(test::printedRows() == expected);
        EXPECT_TRUE(test::graphicsWereSent());
        transport() = {};
    }
}

TEST_F(PdfPrinting, ShiftsAPageWhoseCropBoxBeginsBelowZeroTheOtherWay) {
    PrinterResolution = 72;
    const Rows drawn = {"XXXX", "X X ", " X X", "XX  "};
    print({-1, -1, 4, 4, -1, 1, test::pictureOf(drawn)});
    EXPECT_EQ(test::printedRows(), (Rows{"XXXX", "XXXX", " X X", "X XX"}));
}

// Transparent is all zero, and so black; but the threshold's top row is blank.
TEST_F(PdfPrinting, LeavesTheUnfilledStripTransparent) {
    PrinterResolution = 72;
    for (const bool dithered : {true, false}) {
        ImageDithered = dithered;
        print(pageOf(1, 0, 3, 2, 255));
        EXPECT_EQ(test::printedRows(), (Rows{dithered ? "X  " : "   ", "X  "}));
    }
}

TEST_F(PdfPrinting, PrintsNoDotOfABlankPageWithAFractionalSize) {
    const PdfPage blank = pageOf(0, 0, 595.276, 841.89, 255);
    ASSERT_EQ(blank.picture.width, 596);
    ASSERT_EQ(blank.picture.height, 842);
    for (const std::int32_t resolution : {72, 200, 300}) {
        for (const bool dithered : {true, false}) {
            SCOPED_TRACE(testing::Message() << resolution << ", dithered " << dithered);
            PrinterResolution = resolution;
            ImageDithered = dithered;
            EXPECT_TRUE(print(blank));
            EXPECT_FALSE(test::graphicsWereSent());
            EXPECT_EQ(transport().operations(), std::vector<std::string>{"Write_BT_Data"});
            transport() = {};
        }
    }
}

TEST_F(PdfPrinting, PrintsNoDotOfABlankPageThatBeginsWithinAPixel) {
    const PdfPage blank = pageOf(0.5, 0.5, 100, 100, 255);
    ASSERT_EQ(blank.top, -1);
    EXPECT_TRUE(print(blank));
    EXPECT_FALSE(test::graphicsWereSent());
}

TEST_F(PdfPrinting, KeepsThePixelsThatTheCropBoxCoversInPart) {
    PrinterResolution = 144;
    ImageDithered = false;
    print({0, 0, 3.5, 2.5, 0, 0, test::pictureOf({"    ", "    ", "   X"})});
    EXPECT_EQ(test::printedSize(), "7 x 5");
    EXPECT_EQ(test::printedRows().back(), "     XX");  // 4 columns blended into 7
}

TEST_F(PdfPrinting, TakesThePageFromTheSourceOnceOnTheCallersThread) {
    std::vector<std::string> urls;
    std::thread::id thread;
    platform::setPdfPageSource([&](const URL& url) {
        urls.push_back(url.absoluteText());
        thread = std::this_thread::get_id();
        return PdfPageResult{};
    });
    EXPECT_TRUE(PdfToBmp(URL::fromText("file:///a.pdf")));
    EXPECT_EQ(urls, std::vector<std::string>{"file:///a.pdf"});
    EXPECT_EQ(thread, std::this_thread::get_id());
}

TEST_F(PdfPrinting, LeavesTheJobAsTheCallerSetIt) {
    originalx = 10;
    originaly = 20;
    print(pageOf(0, 0, 12, 12, 0));
    EXPECT_EQ(originalx, 10);
    EXPECT_EQ(originaly, 20);
    EXPECT_EQ(LogoNumber, "");
    const std::string sent = test::readable(transport().dataSent());
    EXPECT_EQ(sent.find("<P1><LM><RE0><DI><RC10,20>"), 0U) << sent;
}

// ---- Nothing to print ---------------------------------------------------------------------------

TEST_F(PdfPrinting, RefusesAnAbsentPageAndStillReturnsTrue) {
    for (const PdfOutcome outcome :
         {PdfOutcome::kUnreadable, PdfOutcome::kNotPdf, PdfOutcome::kEncrypted, PdfOutcome::kNoPage,
          PdfOutcome::kTooLarge, PdfOutcome::kCpuLimit, PdfOutcome::kHelperMissing}) {
        platform::setPdfPageSource([outcome](const URL&) {
            return PdfPageResult{outcome, std::nullopt};
        });
        EXPECT_TRUE(PdfToBmp(URL::fromText("file:///a.pdf")));
        expectRefused();
    }
}

TEST_F(PdfPrinting, RefusesAnAbsentPageAlsoWhenItIsToBeScaled) {
    ImageScaled = true;
    platform::setPdfPageSource([](const URL&) { return PdfPageResult{}; });
    EXPECT_TRUE(PdfToBmp(URL::fromText("file:///a.pdf")));
    expectRefused();
}

TEST_F(PdfPrinting, RefusesThePageOfASourceThatThrows) {
    platform::setPdfPageSource([](const URL&) -> PdfPageResult { throw std::runtime_error("x"); });
    EXPECT_TRUE(PdfToBmp(URL::fromText("file:///a.pdf")));
    expectRefused();
}

TEST_F(PdfPrinting, DoesNotPrintThePageBeforeInPlaceOfAnAbsentOne) {
    print(pageOf(0, 0, 12, 12, 0));
    transport() = {};
    platform::setPdfPageSource([](const URL&) { return PdfPageResult{}; });
    EXPECT_TRUE(PdfToBmp(URL::fromText("file:///a.pdf")));
    expectRefused();
}

TEST_F(PdfPrinting, RefusesResolutionsThatLeaveNoSizeOrTooLargeAOne) {
    for (const bool scaled : {false, true}) {
        for (const std::int32_t resolution : {kMax, kMin, 0, -300, -1, 1000000}) {
            SCOPED_TRACE(testing::Message() << resolution << ", scaled " << scaled);
            ImageScaled = scaled;
            PrinterResolution = resolution;
            EXPECT_TRUE(print(pageOf(0, 0, 612, 792, 255)));
            expectRefused();
        }
    }
}

TEST_F(PdfPrinting, RefusesAPageWhoseSizeIsNoNumberOrOutOfAllBounds) {
    const double nan = std::nan("");
    const std::pair<double, double> sizes[] = {{nan, 100},
                                               {100, nan},
                                               {nan, nan},
                                               {HUGE_VAL, 100},
                                               {100, HUGE_VAL},
                                               {-100, 100},
                                               {100, -100},
                                               {-100, -100},
                                               {0, 100},
                                               {100, 0},
                                               {1e300, 1},
                                               {1, 1e300},
                                               {-HUGE_VAL, HUGE_VAL},
                                               {HUGE_VAL, HUGE_VAL},
                                               {-1e10, -1e10},
                                               {20000, 20000}};
    for (const auto& [width, height] : sizes) {
        SCOPED_TRACE(testing::Message() << width << " x " << height);
        EXPECT_TRUE(print({0, 0, width, height, 0, 0, test::plainPicture(2, 2, 255, 255, 255)}));
        expectRefused();
    }
}

TEST_F(PdfPrinting, AcceptsAPicturePlacedAtTheEndsOfThePlane) {
    PrinterResolution = 72;
    for (const std::int32_t left : {kMax, kMin}) {
        for (const std::int32_t top : {kMax, kMin}) {
            print({0, 0, 4, 2, left, top, test::plainPicture(2, 2, 255, 255, 255)});
            EXPECT_EQ(test::printedRows(), (Rows{"XXXX", "XXXX"}));
        }
    }
}

}  // namespace
}  // namespace tavio::intake
