#include "TavioIpadSDK/intake/target_size.h"

#include <cmath>
#include <limits>
#include <ostream>

#include <gtest/gtest.h>

#include "TavioIpadSDK/settings/settings.h"
#include "support/fresh_state.h"

namespace tavio::intake {

void PrintTo(const DotSize& size, std::ostream* out) {
    *out << size.width << " x " << size.height;
}

namespace {

constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();

class TargetSize : public test::FreshState {};

TEST_F(TargetSize, OfAPageIsItsSizeInInchesTimesTheResolution) {
    EXPECT_EQ(pageTargetSize(612, 792), (DotSize{2550, 3300}));
    EXPECT_EQ(pageTargetSize(595, 842), (DotSize{2479, 3508}));
    EXPECT_EQ(pageTargetSize(72, 72), (DotSize{300, 300}));
}

TEST_F(TargetSize, OfAPageFollowsTheResolution) {
    PrinterResolution = 200;
    EXPECT_EQ(pageTargetSize(612, 792), (DotSize{1700, 2200}));
    PrinterResolution = 600;
    EXPECT_EQ(pageTargetSize(612, 792), (DotSize{5100, 6600}));
    PrinterResolution = 72;
    EXPECT_EQ(pageTargetSize(595.9, 842.9), (DotSize{595, 842}));
}

TEST_F(TargetSize, OfAPageIsSwappedInEveryOrientationButLandscape) {
    for (const char* orientation : {"<PM>", "", "<lm>", "<Lm>", "LM", "<LM> "}) {
        PrinterOrientation = orientation;
        EXPECT_EQ(pageTargetSize(612, 792), (DotSize{3300, 2550})) << orientation;
    }
}

TEST_F(TargetSize, OfAPageFollowsTheExactSizeOfItsCropBox) {
    EXPECT_EQ(pageTargetSize(595.276, 841.89), (DotSize{2480, 3507}));
    EXPECT_EQ(pageTargetSize(595, 841), (DotSize{2479, 3504}));
}

// With the multiplication first these would be 22 x 29 dots: both steps are rounded to double.
TEST_F(TargetSize, OfAPageDividesBeforeItMultiplies) {
    PrinterResolution = 200;
    EXPECT_EQ(pageTargetSize(8.28, 10.44), (DotSize{23, 28}));
}

TEST_F(TargetSize, OfAScaledPageIsTheStocksWhateverThePage) {
    ImageScaled = true;
    for (const double side : {1.0, 612.0, 1e9, 0.0, -5.0, HUGE_VAL, std::nan("")}) {
        PrinterOrientation = "<LM>";
        EXPECT_EQ(pageTargetSize(side, side), (DotSize{1650, 600}));
        PrinterOrientation = "<PM>";
        EXPECT_EQ(pageTargetSize(side, side), (DotSize{600, 1650}));
    }
}

TEST_F(TargetSize, OfAScaledPictureIsTruncatedFromStockTimesResolution) {
    ChangeConfiguration("<P1>", 300, true, true, CREDITCARD, "<LM>");
    EXPECT_EQ(photoTargetSize(1, 1), (DotSize{1011, 639}));
    ChangeConfiguration("<P1>", 600, true, true, 7, "<LM>");
    EXPECT_EQ(photoTargetSize(1, 1), (DotSize{6600, 796}));  // of 796.8
}

// The stock's own numbers are swapped in portrait and once more when the size is taken, so that a
// configured portrait stock comes out as wide as in landscape.
TEST_F(TargetSize, OfAScaledPictureSwapsTheStockAsItIsConfigured) {
    ChangeConfiguration("<P1>", 300, true, true, CONCERT, "<PM>");
    EXPECT_EQ(StockWidth, 2.0);
    EXPECT_EQ(photoTargetSize(1200, 800), (DotSize{1650, 600}));
    EXPECT_EQ(pageTargetSize(612, 792), (DotSize{1650, 600}));
}

TEST_F(TargetSize, OfAPhotoIsOneDotForEachPixelAtAnyResolution) {
    for (const std::int32_t resolution : {200, 300, 600, 0, -1}) {
        PrinterResolution = resolution;
        PrinterOrientation = "<LM>";
        EXPECT_EQ(photoTargetSize(1200, 800), (DotSize{1200, 800}));
        PrinterOrientation = "<PM>";
        EXPECT_EQ(photoTargetSize(1200, 800), (DotSize{800, 1200}));
    }
}

TEST_F(TargetSize, OfAScaledPhotoIsTheStocks) {
    ImageScaled = true;
    EXPECT_EQ(photoTargetSize(1200, 800), (DotSize{1650, 600}));
    EXPECT_EQ(photoTargetSize(0, 0), (DotSize{1650, 600}));
    PrinterOrientation = "";
    EXPECT_EQ(photoTargetSize(1200, 800), (DotSize{600, 1650}));
}

TEST_F(TargetSize, StaysWithin32BitsAtTheExtremes) {
    PrinterResolution = kMax;
    EXPECT_EQ(pageTargetSize(612, 36), (DotSize{kMax, kMax / 2}));
    PrinterResolution = kMin;
    EXPECT_EQ(pageTargetSize(612, 36), (DotSize{kMin, kMin / 2}));
    PrinterResolution = 0;
    EXPECT_EQ(pageTargetSize(612, 792), (DotSize{0, 0}));
    PrinterResolution = 300;
    EXPECT_EQ(pageTargetSize(HUGE_VAL, -HUGE_VAL), (DotSize{kMax, kMin}));
    EXPECT_EQ(pageTargetSize(std::nan(""), 72), (DotSize{0, 300}));
    PrinterResolution = 0;
    EXPECT_EQ(pageTargetSize(HUGE_VAL, 72), (DotSize{0, 0}));  // not a number
    ImageScaled = true;
    PrinterResolution = kMax;
    EXPECT_EQ(photoTargetSize(1, 1), (DotSize{kMax, kMax}));
}

}  // namespace
}  // namespace tavio::intake
