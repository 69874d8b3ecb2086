#include "TavioIpadSDK/encoder/bitmap_reader.h"

#include <numeric>

#include <gtest/gtest.h>

#include "TavioIpadSDK/encoder/parse_bmp.h"
#include "TavioIpadSDK/encoder/state.h"
#include "TavioIpadSDK/settings/job.h"
#include "support/bitmaps.h"
#include "support/fresh_state.h"

namespace tavio::encoder {
namespace {

constexpr char kBadDimensions[] = "Error - Invalid Image width/height/depth.";
constexpr char kNotMonochrome[] = "Error - BMP file must be monochrome.";
constexpr char kIncomplete[] = "Error - Image data is incomplete.";

void put32(Bytes& file, std::size_t at, UInt32 value) {
    for (std::size_t i = 0; i < 4; ++i) file.at(at + i) = static_cast<Byte>(value >> (8 * i));
}

class BitmapReader : public test::FreshState {
  protected:
    Bytes file = test::bitmapFile(test::allBlack(32, 8));

    std::vector<std::string> noticesFor(const Bytes& bitmap) {
        notices.clear();
        ParseBMP(bitmap);
        return noticeMessages();
    }
};

using Messages = std::vector<std::string>;

TEST_F(BitmapReader, AssemblesEveryFieldLowestByteFirst) {
    std::iota(file.begin(), file.begin() + 62, Byte{0});
    ParseBMP(file);
    const FileHeader expectedFile{0, 1, 0x05040302, 0x0706, 0x0908, 0x0D0C0B0A};
    const InfoHeader expectedInfo{0x11100F0E, 0x15141312, 0x19181716, 0x1B1A,     0x1D1C,
                                  0x21201F1E, 0x25242322, 0x29282726, 0x2D2C2B2A, 0x31302F2E,
                                  0x35343332, 0x39383736, 0x3D3C3B3A};
    EXPECT_EQ(bmfile, expectedFile);
    EXPECT_EQ(bminfo, expectedInfo);
}

TEST_F(BitmapReader, AcceptsAFileThatDoesNotBeginWithBM) {
    file[0] = 'X';
    file[1] = 'Y';
    EXPECT_EQ(noticesFor(file), Messages{});
    EXPECT_EQ(bmfile.bfType0, 'X');
    EXPECT_EQ(bmfile.bfType1, 'Y');
    EXPECT_EQ(test::transport().calls.size(), 1U);
}

TEST_F(BitmapReader, AcceptsTheWidest_134217727_AndRefusesOneMore) {
    put32(file, 18, 134217727);
    EXPECT_EQ(noticesFor(file), Messages{kIncomplete});  // past the judgement on the width
    put32(file, 18, 134217728);
    EXPECT_EQ(noticesFor(file), Messages{kBadDimensions});
}

TEST_F(BitmapReader, RefusesAWidthOfZero) {
    put32(file, 18, 0);
    EXPECT_EQ(noticesFor(file), Messages{kBadDimensions});
}

TEST_F(BitmapReader, RefusesAHeightOfZero) {
    put32(file, 22, 0);
    EXPECT_EQ(noticesFor(file), Messages{kBadDimensions});
}

TEST_F(BitmapReader, RefusesARowsTopFirstFileByItsNegativeHeight) {
    put32(file, 22, 0xFFFFFFF8);
    EXPECT_EQ(noticesFor(file), Messages{kBadDimensions});
    put32(file, 22, 0x80000000);
    EXPECT_EQ(noticesFor(file), Messages{kBadDimensions});
    put32(file, 22, 0x7FFFFFFF);
    EXPECT_EQ(noticesFor(file), Messages{kIncomplete});
}

TEST_F(BitmapReader, RefusesA24BitFileForItsDepthNotItsColours) {
    file[28] = 24;
    put32(file, 46, 16777216);
    EXPECT_EQ(noticesFor(file), Messages{kBadDimensions});
}

TEST_F(BitmapReader, TakesNoOrOneColourUsedForTwo) {
    for (const UInt32 used : {0U, 1U, 2U}) {
        put32(file, 46, used);
        EXPECT_EQ(noticesFor(file), Messages{});
        EXPECT_EQ(bminfo.biClrUsed, 2U);
    }
}

TEST_F(BitmapReader, RefusesThreeColoursAndKeepsTheCountRead) {
    put32(file, 46, 3);
    EXPECT_EQ(noticesFor(file), Messages{kNotMonochrome});
    EXPECT_EQ(bminfo.biClrUsed, 3U);
    put32(file, 46, 0xFFFFFFFF);
    EXPECT_EQ(noticesFor(file), Messages{kNotMonochrome});
}

TEST_F(BitmapReader, ShowsEachNoticeUnderAlertWithAnOkButton) {
    Bytes noWidth = file;
    put32(noWidth, 18, 0);
    Bytes threeColours = file;
    put32(threeColours, 46, 3);
    const Bytes noRows(file.begin(), file.begin() + 62);
    const Bytes noHeader(file.begin(), file.begin() + 61);
    for (const Bytes& bitmap : {noWidth, threeColours, noRows, noHeader}) {
        ASSERT_EQ(noticesFor(bitmap).size(), 1U);
        EXPECT_EQ(notices[0].title, "Alert");
        EXPECT_EQ(notices[0].button, "OK");
    }
}

TEST_F(BitmapReader, SetsBothPixelsPerMetreTo128WhenEitherIsZero) {
    put32(file, 38, 7);
    ParseBMP(file);
    EXPECT_EQ(bminfo.biXPPMeter, 128U);
    EXPECT_EQ(bminfo.biYPPMeter, 128U);
    put32(file, 38, 0);
    put32(file, 42, 9);
    ParseBMP(file);
    EXPECT_EQ(bminfo.biXPPMeter, 128U);
    EXPECT_EQ(bminfo.biYPPMeter, 128U);
    put32(file, 38, 7);
    ParseBMP(file);
    EXPECT_EQ(bminfo.biXPPMeter, 7U);
    EXPECT_EQ(bminfo.biYPPMeter, 9U);
}

TEST_F(BitmapReader, PrintsZeroBitsWhateverTheColourTableSays) {
    ParseBMP(file);
    const Bytes asUsual = test::transport().dataSent();
    for (std::size_t i = 0; i < 3; ++i) {
        file[54 + i] = 255;
        file[58 + i] = 0;
    }
    test::transport().calls.clear();
    ParseBMP(file);
    EXPECT_EQ(test::transport().dataSent(), asUsual);
}

TEST_F(BitmapReader, RefusesFewerThan62BytesAtOnceAndKeepsTheHeadersOfBefore) {
    ParseBMP(file);
    const FileHeader before = bmfile;
    const InfoHeader infoBefore = bminfo;
    originalx = 5;
    originaly = 6;
    file[0] = 'Z';
    put32(file, 18, 9);
    for (std::size_t size = 0; size < 62; ++size) {
        EXPECT_EQ(noticesFor(Bytes(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size))),
                  Messages{kIncomplete});
        EXPECT_EQ(bmfile, before);
        EXPECT_EQ(bminfo, infoBefore);
        EXPECT_EQ(originalx, 5);
        EXPECT_EQ(originaly, 6);
    }
}

TEST_F(BitmapReader, RefusesEveryLengthShortOfHeaderAndRowsBeforeAnythingIsSent) {
    LogoNumber = "3";
    originalx = 5;
    originaly = 6;
    for (std::size_t size = 62; size < file.size(); ++size) {
        EXPECT_EQ(noticesFor(Bytes(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size))),
                  Messages{kIncomplete});
    }
    EXPECT_TRUE(test::transport().calls.empty());
    EXPECT_EQ(originalx, 5);
    EXPECT_EQ(originaly, 6);
}

TEST_F(BitmapReader, JudgesDimensionsAndColoursBeforeCompleteness) {
    Bytes header(file.begin(), file.begin() + 62);
    put32(header, 46, 3);
    EXPECT_EQ(noticesFor(header), Messages{kNotMonochrome});
    put32(header, 18, 0);
    EXPECT_EQ(noticesFor(header), Messages{kBadDimensions});
}

TEST_F(BitmapReader, DoesNotWrapTheSizeOfAllRows) {
    put32(file, 18, 0x04000000);  // rows of 2^23 bytes
    put32(file, 22, 0x00000200);  // 2^9 rows: 2^32 bytes in all, 0 in 32 bits
    EXPECT_EQ(noticesFor(file), Messages{kIncomplete});
}

TEST_F(BitmapReader, TakesTheRowsFromTheFilesEndWhateverItsOffsetFieldSays) {
    ParseBMP(file);
    const Bytes asUsual = test::transport().dataSent();
    put32(file, 10, 9999);
    file.insert(file.begin() + 62, 100, Byte{0x55});
    test::transport().calls.clear();
    ParseBMP(file);
    EXPECT_EQ(test::transport().dataSent(), asUsual);
}

TEST(RowGeometry, HasTheWorkedValues) {
    struct Case {
        UInt32 width;
        double dataSize;
        UInt32 rowSize, nibbles, bytes;
    };
    for (const Case& c :
         {Case{8, 1.0, 4, 6, 3}, Case{12, 1.5, 4, 5, 2}, Case{24, 3.0, 4, 2, 1},
          Case{32, 4.0, 4, 0, 0}, Case{64, 8.0, 8, 0, 0}, Case{100, 12.5, 16, 7, 3}}) {
        InfoHeader info;
        info.biWidth = c.width;
        info.biHeight = 3;
        info.biBitCount = 1;
        const RowGeometry row = rowGeometry(info);
        EXPECT_EQ(row.DataSize, c.dataSize) << "width " << c.width;
        EXPECT_EQ(row.RowSize, c.rowSize) << "width " << c.width;
        EXPECT_EQ(row.NibblesToIgnore, c.nibbles) << "width " << c.width;
        EXPECT_EQ(row.BytesToIgnore, c.bytes) << "width " << c.width;
        EXPECT_EQ(row.PixelArraySize, c.width * 3) << "width " << c.width;
    }
}

TEST(RowGeometry, WrapsThePixelCountIn32Bits) {
    InfoHeader info;
    info.biWidth = 0x10000;
    info.biHeight = 0x10001;
    info.biBitCount = 1;
    EXPECT_EQ(rowGeometry(info).PixelArraySize, 0x10000U);
}

}  // namespace
}  // namespace tavio::encoder
