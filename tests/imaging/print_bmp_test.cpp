#include "TavioIpadSDK/imaging/print_bmp.h"

#include <memory>
#include <span>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "TavioIpadSDK/TavioIpadSDK.h"
#include "TavioIpadSDK/encoder/state.h"
#include "TavioIpadSDK/imaging/entries.h"
#include "TavioIpadSDK/imaging/state.h"
#include "support/bitmaps.h"
#include "support/fresh_state.h"
#include "support/literal_imaging.h"

namespace tavio::imaging {
namespace {

using pictures::Picture;
using test::pictureOf;
using test::plainPicture;
using test::transport;

constexpr char kRefusal[] = "Error - Invalid Image width/height/depth.";

class PrintBmp : public test::FreshState {
  protected:
    PrintBmp() { Mode = "WF"; }

    void expectRefusal() {
        EXPECT_EQ(noticeMessages(), std::vector<std::string>{kRefusal});
        EXPECT_TRUE(transport().calls.empty());
    }
};

TEST_F(PrintBmp, StretchesInBothDirectionsOnTheirOwn) {
    PrintBMP(200, 200, plainPicture(100, 50, 255, 255, 255));
    EXPECT_EQ(mWidth, 200);
    EXPECT_EQ(mHeight, 200);
    EXPECT_EQ(encoder::bminfo.biWidth, 200U);
    EXPECT_EQ(encoder::bminfo.biHeight, 200U);
}

TEST_F(PrintBmp, PutsWhatWasLeftAndRightLeftAndRightAfterStretching) {
    ImageDithered = false;
    PrintBMP(64, 16, pictureOf({"X ", "X "}));
    const Bytes& file = *myImageData;
    const Bytes bottomRow(file.begin() + 62, file.begin() + 70);
    EXPECT_EQ(bottomRow.front(), 0x00);
    EXPECT_EQ(bottomRow.back(), 0xFF);
}

TEST_F(PrintBmp, PrintsATurnedPictureUpright) {
    Picture stored = pictureOf({"XX", "  "});
    for (const auto& [orientation, topLeft, bottomLeft] :
         {std::tuple{1, 'X', ' '}, std::tuple{3, ' ', 'X'}, std::tuple{4, ' ', 'X'}}) {
        stored.orientation = orientation;
        PrintBMP(2, 2, stored);
        EXPECT_EQ(mDataArray[32] == BLACK ? 'X' : ' ', topLeft) << orientation;
        EXPECT_EQ(mDataArray[0] == BLACK ? 'X' : ' ', bottomLeft) << orientation;
    }
    stored.orientation = 6;  // its stored top is the right side
    PrintBMP(2, 2, stored);
    EXPECT_EQ(mDataArray[0], WHITE);
    EXPECT_EQ(mDataArray[1], BLACK);
    EXPECT_EQ(mDataArray[33], BLACK);
}

TEST_F(PrintBmp, HandsOverExactlyHeaderAndRowsAndKeepsThem) {
    PrintBMP(33, 9, plainPicture(33, 9, 20, 200, 90));
    ASSERT_NE(myImageData, nullptr);
    const Bytes& file = *myImageData;
    EXPECT_EQ(file.size(), static_cast<std::size_t>(nRead) + 62);
    EXPECT_EQ(file[0], 'B');
    EXPECT_EQ(file[1], 'M');
    EXPECT_EQ(Bytes(file.begin() + 62, file.end()), mRawBitmapData);
    EXPECT_EQ(Bytes(file.begin(), file.begin() + 62), Bytes(BMPHeader.begin(), BMPHeader.end()));
}

TEST_F(PrintBmp, DithersOrNotAsTheSettingSays) {
    const Picture blue = plainPicture(8, 8, 0, 0, 255);
    PrintBMP(8, 8, blue);
    EXPECT_EQ(mDataArray, test::ditherLiterally(blue));
    ImageDithered = false;
    PrintBMP(8, 8, blue);
    EXPECT_EQ(mDataArray, test::thresholdLiterally(blue));
}

TEST_F(PrintBmp, NeverPrintsAnAbsentPictureBlackWhateverSizeIsAskedFor) {
    PrintBMP(100, 100, std::nullopt);
    expectRefusal();
    EXPECT_EQ(mWidth, 0);
    EXPECT_EQ(mHeight, 0);
    EXPECT_EQ(myImageData->size(), 62U);
}

TEST_F(PrintBmp, RefusesAPictureWithoutPixels) {
    PrintBMP(100, 100, Picture{});
    expectRefusal();
}

TEST_F(PrintBmp, TakesANegativeSizeForZero) {
    PrintBMP(-5, 100, plainPicture(4, 4, 0, 0, 0));
    expectRefusal();
    EXPECT_EQ(mWidth, 0);
    EXPECT_EQ(mHeight, 100);
    notices.clear();
    PrintBMP(100, INT32_MIN, plainPicture(4, 4, 0, 0, 0));
    expectRefusal();
}

TEST_F(PrintBmp, TakesNoMemoryForWidthWithoutHeight) {
    for (const bool dithered : {true, false}) {
        ImageDithered = dithered;
        PrintBMP(INT32_MAX, 0, plainPicture(4, 4, 0, 0, 0));
        expectRefusal();
        EXPECT_EQ(mWidth, INT32_MAX);
        EXPECT_TRUE(mDataArray.empty());
        notices.clear();
    }
}

// Rows that end before their picture does.
class DamagedRows : public pictures::PictureRows {
  public:
    std::int32_t width() const override { return 40; }
    std::int32_t height() const override { return 40; }
    std::span<const UInt32> next(std::int32_t /*maxRows*/) override {
        if (row_++ == 39) throw pictures::DamagedPicture("cut short");
        return pixels_;
    }

  private:
    std::vector<UInt32> pixels_ = std::vector<UInt32>(40, 0);
    int row_ = 0;
};

TEST_F(PrintBmp, FindsDamageOnTheLastRowWhateverSizeIsAskedFor) {
    for (const auto& [width, height] : {std::pair{100, 100}, {40, 40}, {0, 50}, {50, 0}, {0, 0}}) {
        PrintBMP(width, height, std::make_unique<DamagedRows>());
        expectRefusal();
        EXPECT_EQ(mWidth, 0);
        EXPECT_EQ(mHeight, 0);
        notices.clear();
    }
}

TEST_F(PrintBmp, RefusesMoreThan2To28Dots) {
    PrintBMP(16384, 16385, plainPicture(4, 4, 0, 0, 0));
    expectRefusal();
    notices.clear();
    PrintBMP(INT32_MAX, INT32_MAX, plainPicture(4, 4, 0, 0, 0));
    expectRefusal();
}

TEST_F(PrintBmp, RefusesRowsWhosePaddingMakesMoreThan31BitsOfEntries) {
    PrintBMP(1, 1 << 26, plainPicture(4, 4, 0, 0, 0));
    expectRefusal();
}

TEST(PrintableSize, EndsAt2To28DotsAndAt31BitsOfPaddedEntries) {
    EXPECT_TRUE(isPrintableSize(0, 0));
    EXPECT_TRUE(isPrintableSize(16384, 16384));
    EXPECT_FALSE(isPrintableSize(16384, 16385));
    EXPECT_TRUE(isPrintableSize(1 << 28, 1));
    EXPECT_FALSE(isPrintableSize((1 << 28) + 1, 1));
    EXPECT_TRUE(isPrintableSize(1, (1 << 26) - 1));  // 32 entries a row: 2^31 - 32
    EXPECT_FALSE(isPrintableSize(1, 1 << 26));
    EXPECT_FALSE(isPrintableSize(INT32_MAX, INT32_MAX));
}

// A picture that cannot be fitted, here one that says it is larger than any may be.
TEST_F(PrintBmp, DoesNotPrintThePictureBeforeWhenFittingFails) {
    PrintBMP(32, 16, plainPicture(4, 4, 0, 0, 0));
    transport().calls.clear();
    Picture impossible = plainPicture(1, 1, 0, 0, 0);
    impossible.width = impossible.height = 1 << 15;
    PrintBMP(32, 16, impossible);
    expectRefusal();
}

TEST_F(PrintBmp, OpensItsSurfaceOnceAndNeverClosesIt) {
    PrintBMP(100, 100, plainPicture(10, 10, 0, 0, 0));
    const UInt32* surface = openSurface.data();
    ASSERT_FALSE(openSurface.empty());
    for (int print = 0; print < 20; ++print) {
        PrintBMP(100 - print, 100, plainPicture(10, 10, 0, 0, 0));
        EXPECT_EQ(openSurface.data(), surface);
    }
}

TEST_F(PrintBmp, PrintsTransparentPartsBlack) {
    Picture picture = plainPicture(32, 8, 255, 255, 255);
    std::fill_n(picture.pixels.begin(), 32, 0U);  // the top row
    PrintBMP(32, 8, picture);
    EXPECT_EQ(Bytes(mDataArray.end() - 32, mDataArray.end()), Bytes(32, BLACK));
    EXPECT_EQ(Bytes(mDataArray.begin(), mDataArray.begin() + 32), Bytes(32, WHITE));
}

}  // namespace
}  // namespace tavio::imaging
