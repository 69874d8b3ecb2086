#include "TavioIpadSDK/pictures/exif_orientation.h"

#include <cstddef>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "TavioIpadSDK/pictures/upright.h"
#include "pictures/sample_pictures.h"
#include "stretch/slow_resample.h"

namespace tavio::pictures {
namespace {

using samples::exifBlock;

// Offsets of the numbers in exifBlock(); the second entry is the orientation.
constexpr std::size_t kDirectoryOffset = 4;
constexpr std::size_t kEntryCount = 8;
constexpr std::size_t kType = 24;
constexpr std::size_t kCount = 26;
constexpr std::size_t kValueEnd = 32;

Bytes changed(std::size_t at, Byte value) {
    Bytes block = exifBlock(6, false);
    block.at(at) = value;
    return block;
}

TEST(ExifOrientation, ReadsAllValuesInBothByteOrders) {
    for (int orientation = 1; orientation <= 8; ++orientation) {
        EXPECT_EQ(exifOrientation(exifBlock(orientation, false)), orientation);
        EXPECT_EQ(exifOrientation(exifBlock(orientation, true)), orientation);
    }
}

TEST(ExifOrientation, IsUprightForAValueThatMeansNothing) {
    for (const int value : {0, 9, 255, 0x0600, 65535}) {
        SCOPED_TRACE(value);
        EXPECT_EQ(exifOrientation(exifBlock(value, false)), 1);
        EXPECT_EQ(exifOrientation(exifBlock(value, true)), 1);
    }
}

TEST(ExifOrientation, IsUprightForAMalformedBlock) {
    EXPECT_EQ(exifOrientation({}), 1);
    EXPECT_EQ(exifOrientation(changed(0, 'M')), 1) << "two byte orders";
    EXPECT_EQ(exifOrientation(changed(2, 43)), 1) << "another format";
    EXPECT_EQ(exifOrientation(changed(kDirectoryOffset + 3, 0xFF)), 1) << "entries far outside";
    EXPECT_EQ(exifOrientation(changed(kDirectoryOffset, 60)), 1) << "entries just outside";
    EXPECT_EQ(exifOrientation(changed(kEntryCount, 1)), 1) << "no entry for it";
    EXPECT_EQ(exifOrientation(changed(kType, 4)), 1) << "a number of another type";
    EXPECT_EQ(exifOrientation(changed(kCount, 2)), 1) << "two numbers";
}

TEST(ExifOrientation, ReadsNoEntryThatIsCutShort) {
    const Bytes block = exifBlock(6, false);
    for (std::size_t size = 0; size < block.size(); ++size) {
        const Bytes cut(block.begin(), block.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_EQ(exifOrientation(cut), size < kValueEnd + 2 ? 1 : 6) << size;
    }
}

TEST(ExifOrientation, StaysInsideABlockOfRandomBytes) {
    constexpr std::uint32_t kSeed = 7;
    std::mt19937 random(kSeed);
    for (int round = 0; round < 20000; ++round) {
        SCOPED_TRACE("seed " + std::to_string(kSeed) + ", round " + std::to_string(round));
        Bytes block = exifBlock(6, round % 2 == 0);
        for (int change = 0; change < 3; ++change)
            block[random() % block.size()] = static_cast<Byte>(random());
        const int orientation = exifOrientation(block);
        ASSERT_GE(orientation, 1);
        ASSERT_LE(orientation, 8);
    }
}

// The picture as it stands upright, small enough for the noise of its coding to vanish.
Picture thumbnail(const Picture& picture) {
    return stretch::stretched(picture, 24, 24);
}

// File 0 holds the orientation 0, which means nothing, so its pixels stand as they are stored.
void expectSamePhotos(const std::string& series, std::int32_t width, std::int32_t height) {
    if (!samples::haveCorpus()) GTEST_SKIP() << "no sample files here";
    const auto photo = [&series](int number) {
        return samples::decoded(
            samples::corpusFile("exif/" + series + "_" + std::to_string(number) + ".jpg"));
    };
    const Picture first = thumbnail(photo(1));
    for (int number = 0; number <= 8; ++number) {
        SCOPED_TRACE(number);
        Picture picture = photo(number);
        EXPECT_EQ(picture.orientation, number == 0 ? 1 : number);
        EXPECT_EQ(uprightWidth(picture), width);
        EXPECT_EQ(uprightHeight(picture), height);
        EXPECT_LT(samples::meanDifference(thumbnail(picture), first), 3.0);
        if (number <= 1) continue;
        picture.orientation = 1;
        EXPECT_GT(samples::meanDifference(thumbnail(picture), first), 10.0) << "not turned at all";
    }
}

TEST(ExifOrientation, TurnsAllLandscapePhotosUpright) {
    expectSamePhotos("Landscape", 1800, 1200);
}

TEST(ExifOrientation, TurnsAllPortraitPhotosUpright) {
    expectSamePhotos("Portrait", 1200, 1800);
}

}  // namespace
}  // namespace tavio::pictures
