#include "TavioIpadSDK/imaging/monochrome.h"

#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

#include "TavioIpadSDK/imaging/entries.h"
#include "TavioIpadSDK/imaging/state.h"
#include "imaging/diffused_pictures.h"
#include "support/bitmaps.h"
#include "support/fresh_state.h"
#include "support/literal_imaging.h"
#include "support/random_picture.h"

namespace tavio::imaging {
namespace {

using pictures::Picture;
using pictures::premultipliedPixel;
using test::pictureOf;
using test::plainPicture;

class Monochrome : public test::FreshState {
  protected:
    // The first entry of a plain 1 x 2 picture's bottom row.
    static bool isBlackDithered(unsigned red, unsigned green, unsigned blue) {
        CreateTransformedImage(plainPicture(1, 1, red, green, blue));
        return mDataArray[0] == BLACK;
    }
    static bool isBlackByThreshold(unsigned red, unsigned green, unsigned blue) {
        ConvertToMonochrome(plainPicture(1, 2, red, green, blue));
        return mDataArray[0] == BLACK;
    }
};

TEST_F(Monochrome, PadsRowsOf33PixelsTo64WithWhite) {
    for (const bool dithered : {true, false}) {
        const Picture picture = plainPicture(33, 2, 0, 0, 0);
        dithered ? CreateTransformedImage(picture) : ConvertToMonochrome(picture);
        EXPECT_EQ(mDataWidth, 64);
        EXPECT_EQ(mDataArrayLength, 128);
        EXPECT_EQ(mDataArray[32], BLACK);
        for (std::size_t i = 33; i < 64; ++i) ASSERT_EQ(mDataArray[i], WHITE) << i;
    }
}

TEST_F(Monochrome, PadsNothingAt32Pixels) {
    CreateTransformedImage(plainPicture(32, 1, 0, 0, 0));
    EXPECT_EQ(mDataWidth, 32);
    EXPECT_EQ(mDataArray, Bytes(32, BLACK));
}

TEST_F(Monochrome, WritesRowsBottomFirst) {
    const Picture picture = pictureOf({"X ", "  ", " X"});
    CreateTransformedImage(picture);
    EXPECT_EQ(mDataArray[0], WHITE);
    EXPECT_EQ(mDataArray[1], BLACK);
    EXPECT_EQ(mDataArray[64], BLACK);
    EXPECT_EQ(k, 96U);
}

TEST_F(Monochrome, LeavesTheTopRowWhiteInTheThresholdConversionOnly) {
    const Picture picture = plainPicture(4, 3, 0, 0, 0);
    ConvertToMonochrome(picture);
    Bytes expected(96, WHITE);
    for (const std::size_t row : {0U, 32U})
        std::fill_n(expected.begin() + static_cast<int>(row), 4, Byte{BLACK});
    EXPECT_EQ(mDataArray, expected);
    CreateTransformedImage(picture);
    EXPECT_EQ(mDataArray[64], BLACK);
}

TEST_F(Monochrome, LeavesNothingOfTheLastPrintInTheThresholdsTopRow) {
    CreateTransformedImage(plainPicture(32, 4, 0, 0, 0));
    ConvertToMonochrome(plainPicture(32, 2, 0, 0, 0));
    EXPECT_EQ(Bytes(mDataArray.begin() + 32, mDataArray.begin() + 64), Bytes(32, WHITE));
}

TEST_F(Monochrome, JudgesPureColoursByRotatedChannelsWhenDithering) {
    EXPECT_FALSE(isBlackDithered(0, 0, 255));
    EXPECT_TRUE(isBlackDithered(255, 0, 0));
    EXPECT_TRUE(isBlackDithered(0, 255, 0));
}

TEST_F(Monochrome, JudgesPureColoursAsTheyAreByThreshold) {
    EXPECT_TRUE(isBlackByThreshold(0, 0, 255));
    EXPECT_TRUE(isBlackByThreshold(255, 0, 0));
    EXPECT_FALSE(isBlackByThreshold(0, 255, 0));
}

TEST_F(Monochrome, MakesMidGreyBlackAndTheNextGreyWhiteOnBothPaths) {
    EXPECT_TRUE(isBlackDithered(128, 128, 128));
    EXPECT_TRUE(isBlackByThreshold(128, 128, 128));
    EXPECT_FALSE(isBlackDithered(129, 129, 129));
    EXPECT_FALSE(isBlackByThreshold(129, 129, 129));
}

TEST_F(Monochrome, PrintsFullyTransparentPicturesAllBlackOnBothPaths) {
    Picture picture = plainPicture(32, 4, 0, 0, 0);
    picture.pixels.assign(128, premultipliedPixel(255, 255, 255, 0));
    CreateTransformedImage(picture);
    EXPECT_EQ(mDataArray, Bytes(128, BLACK));
    ConvertToMonochrome(picture);
    EXPECT_EQ(Bytes(mDataArray.begin(), mDataArray.begin() + 96), Bytes(96, BLACK));
}

TEST_F(Monochrome, ConvertsNoRowOfAPictureOfHeightZero) {
    for (const bool dithered : {true, false}) {
        const Picture picture = plainPicture(40, 0, 0, 0, 0);
        dithered ? CreateTransformedImage(picture) : ConvertToMonochrome(picture);
        EXPECT_EQ(mWidth, 40);
        EXPECT_EQ(mHeight, 0);
        EXPECT_EQ(mDataArrayLength, 0);
        EXPECT_TRUE(mDataArray.empty());
    }
}

TEST_F(Monochrome, ConvertsRandomPicturesLikeTheSlowTwins) {
    for (unsigned seed = 1; seed <= 1000; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        test::Random random(seed);
        const Picture picture = test::randomPicture(random, 60);
        CreateTransformedImage(picture);
        ASSERT_EQ(mDataArray, test::ditherLiterally(picture));
        ConvertToMonochrome(picture);
        ASSERT_EQ(mDataArray, test::thresholdLiterally(picture));
    }
}

TEST_F(Monochrome, ComesOutOfMakeItMonochromeAsOfTheWholeConversion) {
    for (unsigned seed = 1; seed <= 200; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        test::Random random(seed);
        const Picture picture = test::randomPicture(random, 60);
        CreateTransformedImage(picture);
        const Bytes expected(mDataArray.begin(), mDataArray.end());
        std::ranges::fill(mDataArray, Byte{0xA5});
        k = 7;
        MakeItMonochrome(test::diffusedRecords(picture), picture.width, picture.height);
        ASSERT_EQ(mDataArray, expected);
        ASSERT_EQ(k, static_cast<UInt32>(mDataArrayLength));
    }
}

TEST_F(Monochrome, NeedsNoRecordsToMakeItMonochrome) {
    for (const auto& [width, height] : {std::pair{0, 0}, {40, 0}, {0, 40}}) {
        CreateTransformedImage(Picture{width, height, {}, 1});
        k = 7;
        MakeItMonochrome({}, width, height);
        EXPECT_EQ(k, 0U);
    }
}

TEST_F(Monochrome, UsesTheMemoryOfTheLastPrintAgain) {
    CreateTransformedImage(plainPicture(100, 100, 9, 9, 9));
    const Byte* entries = mDataArray.data();
    CreateTransformedImage(plainPicture(90, 100, 9, 9, 9));
    EXPECT_EQ(mDataArray.data(), entries);
}

TEST_F(Monochrome, NeverTouchesTheGlobalsDeclaredForTheApplication) {
    CreateTransformedImage(plainPicture(8, 8, 0, 0, 0));
    EXPECT_EQ(Pixels, nullptr);
    EXPECT_EQ(Planes, nullptr);
    EXPECT_EQ(CompBuffer, nullptr);
    EXPECT_EQ(BitBuffer, nullptr);
}

}  // namespace
}  // namespace tavio::imaging
