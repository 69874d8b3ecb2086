// Files that are no pictures, or damaged ones, are never printed.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "TavioIpadSDK/pictures/picture_rows.h"
#include "TavioIpadSDK/sharp/open_picture.h"
#include "pictures/sample_pictures.h"

namespace tavio::sharp {
namespace {

using pictures::DamagedPicture;
using pictures::Refusal;
namespace samples = pictures::samples;

constexpr std::uint32_t kSeed = 7;

constexpr FitRules kOwnSize{Fit::kActual, Turn::k0, 1, 1};

SharpPicture opened(const Bytes& file, const FitRules& rules, bool mayUseThreads = false) {
    return openPicture(std::make_shared<const Bytes>(file), rules, mayUseThreads);
}

// How many of the rows come before the damage. A test failure if all come, or if the reason changes.
std::int32_t rowsBeforeDamage(GreyRows& rows) {
    std::int32_t count = 0;
    try {
        for (;;) {
            const auto strip = rows.next(3);
            if (strip.empty()) break;
            count += static_cast<std::int32_t>(strip.size()) / rows.width();
        }
        ADD_FAILURE() << "no damage was found";
    } catch (const DamagedPicture& damage) {
        try {
            rows.next(1);
            ADD_FAILURE() << "more rows came";
        } catch (const DamagedPicture& again) {
            EXPECT_STREQ(again.what(), damage.what());
        }
    }
    EXPECT_LT(count, rows.height());
    return count;
}

Bytes noise(std::mt19937& random, std::size_t count) {
    Bytes bytes(count);
    for (Byte& byte : bytes) byte = static_cast<Byte>(random());
    return bytes;
}

Bytes noisyPng(std::uint32_t side, bool isInterlaced) {
    std::mt19937 random(kSeed);
    samples::PngPlan plan;
    plan.width = side;
    plan.height = side;
    plan.colourType = 0;
    plan.interlaced = isInterlaced;
    plan.samples = noise(random, std::size_t{side} * side);
    return samples::pngFile(plan);
}

Bytes noisyJpeg(std::uint32_t side, bool isProgressive) {
    std::mt19937 random(kSeed);
    samples::JpegPlan plan;
    plan.width = side;
    plan.height = side;
    plan.progressive = isProgressive;
    plan.samples = noise(random, std::size_t{3} * side * side);
    return samples::jpegFile(plan);
}

Bytes withoutEnd(Bytes file, std::size_t count) {
    file.resize(file.size() - count);
    return file;
}

TEST(DamagedSharpPictures, NeverGiveTheirLastRow) {
    constexpr std::uint32_t kSide = 640;  // large enough for a thread
    for (const bool isSpecial : {false, true}) {
        for (const Bytes& file : {noisyPng(kSide, isSpecial), noisyJpeg(kSide, isSpecial)}) {
            for (const std::size_t missing : {std::size_t{1}, file.size() / 2}) {
                const Bytes damaged = withoutEnd(file, missing);
                for (const std::int32_t side : {80, 300, 640, 700}) {
                    for (const Turn turn : {Turn::k0, Turn::k90}) {
                        for (const Fit fit : {Fit::kStretch, Fit::kCover}) {
                            const FitRules rules{fit, turn, side, side / 2};
                            const auto picture = opened(damaged, rules, side % 3 == 0);
                            ASSERT_NE(picture.rows, nullptr) << picture.why;
                            rowsBeforeDamage(*picture.rows);
                        }
                    }
                }
            }
        }
    }
}

TEST(DamagedSharpPictures, AreRefusedIfTheirHeaderIsDamaged) {
    const auto refusalOf = [](const Bytes& file) {
        const SharpPicture picture = opened(file, kOwnSize);
        EXPECT_EQ(picture.rows, nullptr);
        EXPECT_NE(picture.why, "");
        return picture.refusal;
    };
    EXPECT_EQ(refusalOf({}), Refusal::kUnknownFormat);
    EXPECT_EQ(refusalOf({'t', 'e', 'x', 't'}), Refusal::kUnknownFormat);
    const Bytes png = noisyPng(20, false);
    EXPECT_EQ(refusalOf(Bytes(png.begin(), png.begin() + 20)), Refusal::kDamaged);
    const Bytes jpeg = noisyJpeg(20, false);
    EXPECT_EQ(refusalOf(Bytes(jpeg.begin(), jpeg.begin() + 20)), Refusal::kDamaged);
    EXPECT_EQ(openPicture(std::shared_ptr<const Bytes>(), kOwnSize, false).rows, nullptr);
}

TEST(DamagedSharpPictures, AreRefusedIfTheyWouldHaveTooManyDots) {
    const Bytes file = noisyPng(20, false);
    const SharpPicture large = opened(file, {Fit::kStretch, Turn::k0, 1 << 14, (1 << 14) + 1});
    EXPECT_EQ(large.rows, nullptr);
    EXPECT_EQ(large.refusal, Refusal::kTooLarge);
    EXPECT_NE(opened(file, {Fit::kStretch, Turn::k0, 1 << 14, 1 << 14}).rows, nullptr);
}

TEST(DamagedSharpPictures, TakeLittleMemoryForASmallWindow) {
    samples::PngPlan thin;
    thin.width = 1;
    thin.height = 2000;
    thin.colourType = 0;
    for (std::uint32_t row = 0; row < thin.height; ++row)
        thin.samples.push_back(static_cast<Byte>(row));
    // The whole picture would have 10,000 x 20,000,000 dots.
    const SharpPicture cover = opened(samples::pngFile(thin), {Fit::kCover, Turn::k0, 10'000, 16});
    ASSERT_NE(cover.rows, nullptr) << cover.why;
    EXPECT_EQ(cover.rows->next(1).size(), 10'000U);
}

TEST(DamagedSharpPictures, WithoutPixelsAreRefused) {
    const auto empty = std::make_shared<const pictures::Picture>();
    EXPECT_EQ(openPicture(empty, kOwnSize, false).rows, nullptr);
    EXPECT_EQ(openPicture(std::shared_ptr<const pictures::Picture>(), kOwnSize, false).rows,
              nullptr);
}

}  // namespace
}  // namespace tavio::sharp
