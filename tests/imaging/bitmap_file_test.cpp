#include "TavioIpadSDK/imaging/bitmap_file.h"

#include <gtest/gtest.h>

#include "TavioIpadSDK/imaging/monochrome.h"
#include "TavioIpadSDK/imaging/pack_entries.h"
#include "TavioIpadSDK/imaging/state.h"
#include "support/bitmaps.h"
#include "support/fresh_state.h"
#include "support/literal_imaging.h"
#include "support/random_picture.h"

namespace tavio::imaging {
namespace {

Byte packed(const Bytes& eightEntries) {
    Bytes byte(1);
    packEntries(eightEntries, byte);
    return byte[0];
}

class BitmapFile : public test::FreshState {
  protected:
    static UInt32 field(std::size_t at) {
        return BMPHeader[at] | (UInt32{BMPHeader[at + 1]} << 8) |
               (UInt32{BMPHeader[at + 2]} << 16) | (UInt32{BMPHeader[at + 3]} << 24);
    }
};

TEST(PackEntries, FillsTheTwoTopBitsFromTheFirstEntryAndDropsTheEighthOnPurpose) {
    EXPECT_EQ(packed({1, 0, 0, 0, 0, 0, 0, 0}), 0xC0);
    EXPECT_EQ(packed({0, 1, 0, 0, 0, 0, 0, 0}), 0x20);
    EXPECT_EQ(packed({0, 0, 0, 0, 0, 0, 1, 0}), 0x01);
    EXPECT_EQ(packed({0, 0, 0, 0, 0, 0, 0, 1}), 0x00);
    EXPECT_EQ(packed({1, 0, 1, 0, 1, 0, 1, 0}), 0xD5);
    EXPECT_EQ(packed({0, 0, 0, 0, 1, 1, 1, 1}), 0x07);
    EXPECT_EQ(packed({1, 1, 1, 1, 1, 1, 1, 1}), 0xFF);
    EXPECT_EQ(packed({0, 0, 0, 0, 0, 0, 0, 0}), 0x00);
}

TEST(PackEntries, LosesASingleBlackPixelInTheEighthPlace) {
    EXPECT_EQ(packed({1, 1, 1, 1, 1, 1, 1, 0}), 0xFF);
}

TEST(PackEntries, ClearsTwoBitsForASingleBlackPixelInTheFirstPlace) {
    EXPECT_EQ(packed({0, 1, 1, 1, 1, 1, 1, 1}), 0x3F);
}

TEST(PackEntries, PacksAll256GroupsLikeTheSlowTwin) {
    for (int group = 0; group < 256; ++group) {
        Bytes entries;
        for (int bit = 7; bit >= 0; --bit) entries.push_back(static_cast<Byte>((group >> bit) & 1));
        entries.resize(32, 1);
        EXPECT_EQ(packed({entries.begin(), entries.begin() + 8}),
                  test::bitmapFileLiterally(entries, 32, 1)[62]);
    }
}

TEST_F(BitmapFile, HasTheHeaderOfA33x2Picture) {
    CreateTransformedImage(test::plainPicture(33, 2, 255, 255, 255));
    createRawMonochromeData();
    populate_bmpheader();
    EXPECT_EQ(nRead, 16);
    EXPECT_EQ(field(2), 78U);
    EXPECT_EQ(field(18), 33U);
    EXPECT_EQ(field(22), 2U);
    EXPECT_EQ(field(34), 16U);
    EXPECT_EQ(mRawBitmapData, Bytes(16, 0xFF));
}

TEST_F(BitmapFile, RewritesAll62BytesOfTheHeader) {
    BMPHeader.fill(0xAA);
    nRead = 0x01020304;
    mWidth = 0x11121314;
    mHeight = 0x21222324;
    populate_bmpheader();
    const std::array<Byte, 62> expected = {
        'B', 'M', 0x42, 0x03, 0x02, 0x01, 0,    0,    0,    0,    62,   0,    0,    0, 40, 0,
        0,   0,   0x14, 0x13, 0x12, 0x11, 0x24, 0x23, 0x22, 0x21, 1,    0,    1,    0, 0,  0,
        0,   0,   0x04, 0x03, 0x02, 0x01, 0,    0,    0,    0,    0,    0,    0,    0, 0,  0,
        0,   0,   0,    0,    0,    0,    0,    0,    0,    0,    0xFF, 0xFF, 0xFF, 0};
    EXPECT_EQ(BMPHeader, expected);
}

TEST_F(BitmapFile, WritesNegativeHeaderNumbersInTwosComplement) {
    BMPHeader_Int(-2, 4);
    EXPECT_EQ(field(4), 0xFFFFFFFEU);
}

TEST_F(BitmapFile, WritesNoHeaderNumberThatIsNotAllInside) {
    BMPHeader.fill(7);
    const auto before = BMPHeader;
    for (const int index : {-1, -62, 59, 62, INT32_MAX, INT32_MIN}) BMPHeader_Int(0, index);
    EXPECT_EQ(BMPHeader, before);
    BMPHeader_Int(0, 58);
    EXPECT_NE(BMPHeader, before);
}

TEST_F(BitmapFile, PacksRandomPicturesLikeTheSlowTwin) {
    for (unsigned seed = 1; seed <= 500; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        test::Random random(seed);
        CreateTransformedImage(test::randomPicture(random, 80));
        createRawMonochromeData();
        populate_bmpheader();
        const Bytes literal =
            test::bitmapFileLiterally({mDataArray.begin(), mDataArray.end()}, mWidth, mHeight);
        ASSERT_EQ(Bytes(BMPHeader.begin(), BMPHeader.end()),
                  Bytes(literal.begin(), literal.begin() + 62));
        ASSERT_EQ(mRawBitmapData, Bytes(literal.begin() + 62, literal.end()));
    }
}

}  // namespace
}  // namespace tavio::imaging
