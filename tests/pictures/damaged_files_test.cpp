// Every way to cut a small file short, and many ways to change a byte of it.

#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "pictures/sample_pictures.h"
#include "support/decode_picture.h"

namespace tavio::pictures {
namespace {

using samples::BmpPlan;
using samples::JpegPlan;
using samples::PngPlan;

constexpr std::uint32_t kSeed = 90125;

// A changed size can ask for so many pixels that reading them twice takes too long.
constexpr std::size_t kLarge = 100'000;

// Decoded whole, and by rows, of which the last may not come.
void expectEveryPrefixRefused(const Bytes& file) {
    ASSERT_TRUE(decodePicture(file).picture);
    std::mt19937 random(kSeed);
    for (std::size_t size = 0; size < file.size(); ++size) {
        const Bytes cut(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size));
        const DecodedPicture result = decodePicture(cut);
        ASSERT_FALSE(result.picture) << size << " of " << file.size() << " bytes";
        ASSERT_FALSE(result.why.empty());
        const samples::RowsRead rows = samples::readByRows(cut, random);
        ASSERT_EQ(rows.why, result.why) << size << " of " << file.size() << " bytes";
    }
}

// Returns how many of the changed files still held a picture.
int decodeChanged(const Bytes& file, int changesOfEachByte) {
    std::mt19937 random(kSeed);
    int pictures = 0;
    for (std::size_t at = 0; at < file.size(); ++at) {
        for (int change = 0; change < changesOfEachByte; ++change) {
            Bytes changed = file;
            changed[at] ^= static_cast<Byte>(1 + random() % 255);
            const DecodedPicture result = decodePicture(changed);
            SCOPED_TRACE(std::string("seed ") + std::to_string(kSeed) + ", byte " +
                         std::to_string(at));
            EXPECT_NE(result.picture.has_value(), !result.why.empty());
            const bool isLarge = result.picture && result.picture->pixels.size() > kLarge;
            if (!isLarge) samples::expectSameByRows(changed, random);
            if (!result.picture) continue;
            ++pictures;
            const Picture& picture = *result.picture;
            EXPECT_EQ(picture.pixels.size(), static_cast<std::size_t>(picture.width) *
                                                 static_cast<std::size_t>(picture.height));
        }
    }
    return pictures;
}

Bytes noise(std::size_t count) {
    std::mt19937 random(kSeed);
    Bytes bytes(count);
    for (Byte& byte : bytes) byte = static_cast<Byte>(random());
    return bytes;
}

Bytes smallPng(bool interlaced, int depth, int orientation) {
    PngPlan plan;
    plan.width = 9;
    plan.height = 7;
    plan.depth = depth;
    plan.interlaced = interlaced;
    plan.samples = noise(static_cast<std::size_t>(9 * 7 * 4 * depth / 8));
    return samples::withChunkAfterHeader(
        pngFile(plan), samples::pngChunk("eXIf", samples::exifBlock(orientation, true)));
}

Bytes smallJpeg(bool progressive, bool arithmetic, int orientation) {
    JpegPlan plan;
    plan.samples = noise(std::size_t{3} * plan.width * plan.height);
    plan.progressive = progressive;
    plan.arithmetic = arithmetic;
    plan.app1 = {samples::exifApp1(orientation, true)};
    return jpegFile(plan);
}

Bytes plainBmp() {
    BmpPlan plan;
    plan.width = 5;
    plan.height = 4;
    plan.data = noise(std::size_t{16} * 4);
    return bmpFile(plan);
}

Bytes indexedBmp() {
    BmpPlan plan;
    plan.width = 11;
    plan.height = 3;
    plan.bits = 4;
    plan.palette = noise(std::size_t{4} * 16);
    plan.data = noise(std::size_t{8} * 3);
    return bmpFile(plan);
}

Bytes runsBmp() {
    BmpPlan plan;
    plan.width = 6;
    plan.height = 3;
    plan.bits = 8;
    plan.coding = 1;
    plan.paletteEntries = 4;
    plan.palette = noise(std::size_t{4} * 4);
    plan.data = {6, 1, 0, 0, 0, 3, 1, 2, 3, 0, 3, 2, 0, 0, 0, 2, 1, 0, 4, 3, 0, 1};
    return bmpFile(plan);
}

// Rows of the first two are decoded as they are asked for, those of a turned picture as a whole.
constexpr std::array<int, 3> kOrientations = {1, 2, 6};

TEST(DamagedPng, IsRefusedWhereverItIsCut) {
    for (const int orientation : kOrientations) {
        for (const int depth : {8, 16}) {
            expectEveryPrefixRefused(smallPng(false, depth, orientation));
            expectEveryPrefixRefused(smallPng(true, depth, orientation));
        }
    }
}

// Every byte but those of the signature is covered by a checksum or is one.
TEST(DamagedPng, IsRefusedWhereverItIsChanged) {
    for (const int orientation : kOrientations) {
        EXPECT_EQ(decodeChanged(smallPng(false, 8, orientation), 4), 0);
        EXPECT_EQ(decodeChanged(smallPng(true, 16, orientation), 4), 0);
    }
}

TEST(DamagedJpeg, IsRefusedWhereverItIsCut) {
    for (const int orientation : kOrientations) {
        for (const bool progressive : {false, true}) {
            expectEveryPrefixRefused(smallJpeg(progressive, false, orientation));
            expectEveryPrefixRefused(smallJpeg(progressive, true, orientation));
        }
    }
}

TEST(DamagedJpeg, IsAPictureOrRefusedWhereverItIsChanged) {
    for (const int orientation : kOrientations) {
        EXPECT_GT(decodeChanged(smallJpeg(false, false, orientation), 2), 0);
        EXPECT_GT(decodeChanged(smallJpeg(true, false, orientation), 2), 0);
        EXPECT_GT(decodeChanged(smallJpeg(true, true, orientation), 2), 0);
    }
}

TEST(DamagedBmp, IsRefusedWhereverItIsCut) {
    expectEveryPrefixRefused(plainBmp());
    expectEveryPrefixRefused(indexedBmp());
    expectEveryPrefixRefused(runsBmp());
}

TEST(DamagedBmp, IsAPictureOrRefusedWhereverItIsChanged) {
    EXPECT_GT(decodeChanged(plainBmp(), 8), 0);
    EXPECT_GT(decodeChanged(indexedBmp(), 8), 0);
    EXPECT_GT(decodeChanged(runsBmp(), 8), 0);
}

TEST(DecodePicture, RefusesWhatIsNoPicture) {
    const std::string text = "just some text";
    EXPECT_EQ(samples::refusal({}), "the file is neither a PNG nor a JPEG nor a BMP");
    EXPECT_EQ(samples::refusal(Bytes(text.begin(), text.end())),
              "the file is neither a PNG nor a JPEG nor a BMP");
    for (int round = 0; round < 2000; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        Bytes bytes = noise(static_cast<std::size_t>(3 + round % 200));
        bytes[0] = 'B';
        bytes[1] = 'M';
        if (round % 2 == 0) bytes[0] = 0xFF, bytes[1] = 0xD8, bytes[2] = 0xFF;
        ASSERT_FALSE(decodePicture(bytes).picture);
    }
}

}  // namespace
}  // namespace tavio::pictures
