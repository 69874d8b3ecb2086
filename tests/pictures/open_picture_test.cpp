// The rows of an opened picture file: always those of the decoded picture, turned upright.
#include "TavioIpadSDK/pictures/open_picture.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "pictures/sample_pictures.h"

namespace tavio::pictures {
namespace {

using samples::BmpPlan;
using samples::JpegColour;
using samples::JpegPlan;
using samples::PngPlan;

constexpr std::uint32_t kSeed = 4711;
constexpr std::int32_t kAll = std::numeric_limits<std::int32_t>::max();

class OpenPicture : public testing::Test {
  protected:
    Bytes noise(std::size_t count) {
        Bytes bytes(count);
        for (Byte& byte : bytes) byte = static_cast<Byte>(random_());
        return bytes;
    }

    // Wide enough for several strips of rows.
    PngPlan png(int colourType, int depth, bool interlaced = false) {
        constexpr std::array<unsigned, 7> kChannels = {1, 0, 3, 1, 2, 0, 4};
        PngPlan plan;
        plan.width = 5000;
        plan.height = 31;
        plan.colourType = colourType;
        plan.depth = depth;
        plan.interlaced = interlaced;
        const std::size_t bits = std::size_t{plan.width} *
                                 kChannels.at(static_cast<std::size_t>(colourType)) *
                                 static_cast<unsigned>(depth);
        plan.samples = noise((bits + 7) / 8 * plan.height);
        if (colourType == 3) plan.palette = noise(std::size_t{3} << depth);
        return plan;
    }

    JpegPlan jpeg(JpegColour colour) {
        JpegPlan plan;
        plan.width = 3001;
        plan.height = 47;
        plan.colour = colour;
        const std::size_t channels = colour == JpegColour::kGrey ? 1
                                     : colour == JpegColour::kCmyk || colour == JpegColour::kYcck
                                         ? 4
                                         : 3;
        plan.samples = noise(channels * plan.width * plan.height);
        return plan;
    }

    BmpPlan bmp(std::uint32_t bits, std::int32_t height) {
        BmpPlan plan;
        plan.width = 4001;
        plan.height = height;
        plan.bits = bits;
        if (bits <= 8) plan.palette = noise(std::size_t{4} << bits);
        plan.data = noise((std::size_t{4001} * bits + 31) / 32 * 4 * 37);
        return plan;
    }

    std::mt19937 random_{kSeed};
    testing::ScopedTrace trace_{__FILE__, __LINE__, std::string("seed ") + std::to_string(kSeed)};
};

std::unique_ptr<PictureRows> rowsOfFile(const Bytes& file) {
    OpenedPicture opened = openPicture(std::make_shared<const Bytes>(file));
    EXPECT_EQ(opened.why, "");
    return std::move(opened.rows);
}

TEST_F(OpenPicture, GivesTheRowsOfEveryKindOfPng) {
    const std::vector<std::array<int, 2>> kinds = {{0, 1}, {0, 2},  {0, 4},  {0, 8}, {0, 16},
                                                   {2, 8}, {2, 16}, {3, 1},  {3, 2}, {3, 4},
                                                   {3, 8}, {4, 8},  {4, 16}, {6, 8}, {6, 16}};
    for (const auto& [colourType, depth] : kinds) {
        for (const bool interlaced : {false, true}) {
            SCOPED_TRACE(std::to_string(colourType) + " " + std::to_string(depth));
            samples::expectSameByRows(pngFile(png(colourType, depth, interlaced)), random_);
        }
    }
    PngPlan transparent = png(3, 4);
    transparent.paletteAlpha = {0, 100, 200, 255};
    samples::expectSameByRows(pngFile(transparent), random_);
}

TEST_F(OpenPicture, GivesTheRowsOfEveryKindOfJpeg) {
    for (const JpegColour colour : {JpegColour::kGrey, JpegColour::kYcbcr, JpegColour::kRgb,
                                    JpegColour::kCmyk, JpegColour::kYcck}) {
        for (const bool adobe : {true, false}) {
            for (const bool progressive : {true, false}) {
                JpegPlan plan = jpeg(colour);
                plan.adobe = adobe;
                plan.progressive = progressive;
                samples::expectSameByRows(jpegFile(plan), random_);
            }
        }
    }
    JpegPlan arithmetic = jpeg(JpegColour::kYcbcr);
    arithmetic.arithmetic = true;
    samples::expectSameByRows(jpegFile(arithmetic), random_);
    JpegPlan separate = jpeg(JpegColour::kYcbcr);
    separate.oneScanEach = true;
    samples::expectSameByRows(jpegFile(separate), random_);
}

TEST_F(OpenPicture, GivesTheRowsOfEveryKindOfBmpFromTheTop) {
    for (const std::uint32_t bits : {1U, 2U, 4U, 8U, 16U, 24U, 32U}) {
        for (const std::int32_t height : {37, -37}) {
            SCOPED_TRACE(bits);
            samples::expectSameByRows(bmpFile(bmp(bits, height)), random_);
        }
    }
    BmpPlan runs;
    runs.width = 255;
    runs.height = 600;
    runs.bits = 8;
    runs.coding = 1;
    runs.palette = noise(std::size_t{4} * 256);
    for (int row = 0; row < 600; ++row)
        runs.data.insert(runs.data.end(), {255, static_cast<Byte>(row), 0, 0});
    runs.data.insert(runs.data.end(), {0, 1});
    samples::expectSameByRows(bmpFile(runs), random_);
}

TEST_F(OpenPicture, GivesTheRowsOfAPictureInsideOfABmpAndDoesNotTurnIt) {
    PngPlan inner = png(2, 8);
    BmpPlan plan;
    plan.width = static_cast<std::int32_t>(inner.width);
    plan.height = static_cast<std::int32_t>(inner.height);
    plan.bits = 0;
    plan.coding = 5;
    plan.data = samples::withChunkAfterHeader(
        pngFile(inner), samples::pngChunk("eXIf", samples::exifBlock(6, true)));
    const Bytes file = bmpFile(plan);
    samples::expectSameByRows(file, random_);
    EXPECT_EQ(rowsOfFile(file)->width(), 5000);
    plan.data = pngFile(png(2, 8, true));
    samples::expectSameByRows(bmpFile(plan), random_);
    ++plan.height;
    samples::expectSameByRows(bmpFile(plan), random_);
}

TEST_F(OpenPicture, GivesTheRowsOfAllSampleFiles) {
    if (!samples::haveCorpus()) GTEST_SKIP() << "no sample files here";
    const std::vector<std::array<std::string, 2>> folders = {{"png", ".png"},   {"bmp/g", ".bmp"},
                                                             {"bmp/q", ".bmp"}, {"bmp/b", ".bmp"},
                                                             {"jpeg", ".jpg"},  {"exif", ".jpg"}};
    int files = 0;
    for (const auto& [folder, suffix] : folders) {
        for (const std::string& name : samples::corpusNames(folder, suffix)) {
            SCOPED_TRACE(std::string(folder).append("/").append(name));
            samples::expectSameByRows(
                samples::corpusFile(std::string(folder).append("/").append(name)), random_);
            ++files;
        }
    }
    EXPECT_GT(files, 250);
}

// ---- Turned pictures ----------------------------------------------------------------------------

TEST_F(OpenPicture, TurnsAJpegUpright) {
    for (int orientation = 1; orientation <= 8; ++orientation) {
        SCOPED_TRACE(orientation);
        JpegPlan plan = jpeg(JpegColour::kYcbcr);
        plan.app1 = {samples::exifApp1(orientation, true)};
        const Bytes file = jpegFile(plan);
        EXPECT_EQ(rowsOfFile(file)->width(), orientation <= 4 ? 3001 : 47);
        EXPECT_EQ(rowsOfFile(file)->height(), orientation <= 4 ? 47 : 3001);
        samples::expectSameByRows(file, random_);
    }
}

TEST_F(OpenPicture, TurnsAPngUprightWhereverItsOrientationStands) {
    const Bytes plain = pngFile(png(6, 8));
    for (int orientation = 1; orientation <= 8; ++orientation) {
        SCOPED_TRACE(orientation);
        const Bytes exif = samples::pngChunk("eXIf", samples::exifBlock(orientation, false));
        for (const Bytes& file : {samples::withChunkAfterHeader(plain, exif),
                                  samples::withChunkBeforeEnd(plain, exif)}) {
            EXPECT_EQ(samples::decoded(file).orientation, orientation);
            EXPECT_EQ(rowsOfFile(file)->width(), orientation <= 4 ? 5000 : 31);
            samples::expectSameByRows(file, random_);
        }
    }
}

TEST_F(OpenPicture, TakesTheFirstOrientationOfAPngThatIsOne) {
    const Bytes plain = pngFile(png(0, 8));
    const auto exif = [](int orientation) {
        return samples::pngChunk("eXIf", samples::exifBlock(orientation, true));
    };
    const auto orientationOf = [&](const Bytes& early, const Bytes& late) {
        return samples::decoded(
                   samples::withChunkBeforeEnd(samples::withChunkAfterHeader(plain, early), late))
            .orientation;
    };
    EXPECT_EQ(orientationOf(exif(6), exif(3)), 6);
    EXPECT_EQ(orientationOf(exif(1), exif(3)), 1);
    EXPECT_EQ(orientationOf(samples::pngChunk("eXIf", Bytes{}), exif(3)), 3);
    EXPECT_EQ(orientationOf(samples::pngChunk("eXIf", Bytes{'?', '!', 0, 0}), exif(3)), 3);
    EXPECT_EQ(orientationOf(samples::pngChunk("eXIf", Bytes{'?', '?', 0, 42}), exif(3)), 3);
    EXPECT_EQ(orientationOf(samples::pngChunk("tEXt", Bytes{'e', 'X', 'I', 'f', 0}), exif(8)), 8);
    Bytes behindTheEnd = plain;
    const Bytes chunk = exif(6);
    behindTheEnd.insert(behindTheEnd.end(), chunk.begin(), chunk.end());
    EXPECT_EQ(samples::decoded(behindTheEnd).orientation, 1);
}

// ---- Portions -----------------------------------------------------------------------------------

TEST_F(OpenPicture, GivesAtMostAsManyRowsAsAreAskedFor) {
    for (const Bytes& file : {jpegFile(jpeg(JpegColour::kGrey)), pngFile(png(0, 8, true))}) {
        const auto rows = rowsOfFile(file);
        const auto line = static_cast<std::size_t>(rows->width());
        for (std::int32_t row = 0; row < rows->height(); ++row)
            ASSERT_EQ(rows->next(1).size(), line);
        EXPECT_TRUE(rows->next(1).empty());
        EXPECT_TRUE(rows->next(kAll).empty());
    }
}

TEST_F(OpenPicture, GivesARowThatIsWiderThanAStripAtOnce) {
    PngPlan plan;
    plan.width = 100'000;
    plan.height = 3;
    plan.colourType = 0;
    plan.samples = noise(std::size_t{plan.width} * plan.height);
    const auto rows = rowsOfFile(pngFile(plan));
    for (int row = 0; row < 3; ++row) EXPECT_EQ(rows->next(kAll).size(), 100'000U);
    EXPECT_TRUE(rows->next(kAll).empty());
}

TEST_F(OpenPicture, KeepsTheFileAliveAsLongAsItsRows) {
    auto file = std::make_shared<const Bytes>(jpegFile(jpeg(JpegColour::kGrey)));
    const std::weak_ptr<const Bytes> watched = file;
    auto rows = openPicture(std::move(file)).rows;
    ASSERT_TRUE(rows);
    EXPECT_FALSE(watched.expired());
    while (!rows->next(kAll).empty()) EXPECT_FALSE(watched.expired());
    rows.reset();
    EXPECT_TRUE(watched.expired());
}

// ---- No picture ---------------------------------------------------------------------------------

TEST_F(OpenPicture, RefusesWhatItsHeaderTells) {
    const auto why = [](const Bytes& file) {
        return openPicture(std::make_shared<const Bytes>(file)).why;
    };
    EXPECT_EQ(openPicture(nullptr).why, "the file is neither a PNG nor a JPEG nor a BMP");
    EXPECT_EQ(why({}), "the file is neither a PNG nor a JPEG nor a BMP");
    EXPECT_EQ(why({0xFF, 0xD8, 0xFF}), "the JPEG file is cut short");
    Bytes cutBmp = bmpFile(bmp(24, 37));
    cutBmp.pop_back();
    EXPECT_EQ(why(cutBmp), "the BMP file is cut short");
}

TEST_F(OpenPicture, ReadsNoFurtherThanTheHeader) {
    for (Bytes file :
         {jpegFile(jpeg(JpegColour::kYcbcr)), pngFile(png(2, 8)), pngFile(png(2, 8, true))}) {
        const std::int32_t width = rowsOfFile(file)->width();
        file.resize(file.size() / 2);
        const auto rows = rowsOfFile(file);
        ASSERT_TRUE(rows);
        EXPECT_EQ(rows->width(), width);
    }
}

// How many rows come, all asked for one by one, before the file turns out to be damaged. Asked
// again, the rows do not go on.
std::int32_t rowsBefore(const std::string& why, const Bytes& file) {
    const auto rows = rowsOfFile(file);
    std::int32_t came = 0;
    for (;;) {
        try {
            if (rows->next(1).empty()) break;
            ++came;
        } catch (const DamagedPicture& damage) {
            EXPECT_EQ(damage.what(), why);
            for (int again = 0; again < 2; ++again) EXPECT_THROW(rows->next(1), DamagedPicture);
            return came;
        }
    }
    ADD_FAILURE() << "all rows came";
    return came;
}

TEST_F(OpenPicture, GivesAllRowsButTheLastOfAFileWithoutItsEnd) {
    Bytes file = jpegFile(jpeg(JpegColour::kYcbcr));
    file.resize(file.size() - 2);
    EXPECT_GT(rowsBefore("the JPEG file is cut short", file), 0);  // it looks ahead a little
    file = pngFile(png(2, 8));
    file.pop_back();
    EXPECT_EQ(rowsBefore("the PNG file is cut short", file), 30);
    file = pngFile(png(2, 8));
    file.back() ^= 1;
    EXPECT_EQ(rowsBefore("the PNG file is damaged", file), 30);
    BmpPlan plan = bmp(8, 37);
    plan.paletteEntries = 255;
    plan.palette.resize(std::size_t{4} * 255);
    for (Byte& index : plan.data) index = static_cast<Byte>(index % 255);
    plan.data.front() = 255;  // in the bottom row
    EXPECT_EQ(rowsBefore("the BMP file has a pixel outside of its palette", bmpFile(plan)), 36);
}

TEST_F(OpenPicture, GivesNoRowOfADamagedFileThatIsTurned) {
    JpegPlan plan = jpeg(JpegColour::kYcbcr);
    plan.app1 = {samples::exifApp1(6, true)};
    Bytes file = jpegFile(plan);
    file.resize(file.size() - 2);
    EXPECT_EQ(rowsBefore("the JPEG file is cut short", file), 0);
}

}  // namespace
}  // namespace tavio::pictures
