#include "TavioIpadSDK/sharp/open_picture.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "TavioIpadSDK/sharp/luminance.h"
#include "pictures/sample_pictures.h"
#include "sharp/printed_twin.h"
#include "support/decode_picture.h"
#include "support/instruction_sets.h"
#include "support/random_picture.h"

namespace tavio::sharp {
namespace {

using pictures::Picture;
using test::between;
using test::chance;
using test::Random;
namespace samples = pictures::samples;

constexpr std::uint64_t kSeed = 2025;

constexpr FitRules kOwnSize{Fit::kActual, Turn::k0, 1, 1};

class SharpPictures : public testing::Test {
  protected:
    FitRules rules(int maxSide) {
        return {static_cast<Fit>(between(random_, 0, 4)), static_cast<Turn>(between(random_, 0, 4)),
                between(random_, 1, maxSide), between(random_, 1, maxSide)};
    }

    // Of at most `colours` colours.
    Picture fewColoured(std::int32_t width, std::int32_t height, int colours) {
        std::vector<UInt32> palette = {0xFF000000, 0xFFFFFFFF};
        while (palette.size() < static_cast<std::size_t>(colours))
            palette.push_back(static_cast<UInt32>(random_()) | 0xFF000000);
        Picture picture{width, height, {}, between(random_, 1, 8)};
        for (std::int64_t at = 0; at < std::int64_t{width} * height; ++at)
            picture.pixels.push_back(palette[random_() % static_cast<std::size_t>(colours)]);
        return picture;
    }

    Picture samplesOf(std::int32_t width, std::int32_t height) {
        std::mt19937 random(static_cast<std::uint32_t>(random_()));
        return samples::randomPicture(random, width, height, true);
    }

    Picture anyPicture(int maxSide) {
        if (chance(random_, 30)) {
            return fewColoured(between(random_, 1, maxSide), between(random_, 1, maxSide),
                               between(random_, 2, 18));
        }
        Picture picture = test::randomPicture(random_, maxSide);
        picture.orientation = between(random_, 0, 9);
        return picture;
    }

    Random random_{kSeed};
    testing::ScopedTrace trace_{__FILE__, __LINE__, "seed " + std::to_string(kSeed)};
};

SharpPicture opened(const Picture& picture, const FitRules& rules, bool mayUseThreads = false) {
    return openPicture(std::make_shared<const Picture>(picture), rules, mayUseThreads);
}

SharpPicture opened(const Bytes& file, const FitRules& rules, bool mayUseThreads = false) {
    return openPicture(std::make_shared<const Bytes>(file), rules, mayUseThreads);
}

GreyPicture printed(SharpPicture picture, std::int32_t maxRows = 31) {
    EXPECT_EQ(picture.why, "");
    if (!picture.rows) return {};
    EXPECT_EQ(picture.rows->width(), picture.fitted.windowWidth);
    EXPECT_EQ(picture.rows->height(), picture.fitted.windowHeight);
    return readAll(*picture.rows, maxRows);
}

std::string described(const FitRules& rules) {
    return "fit " + std::to_string(static_cast<int>(rules.fit)) + ", turn " +
           std::to_string(static_cast<int>(rules.turn)) + ", box " +
           std::to_string(rules.boxWidth) + " x " + std::to_string(rules.boxHeight);
}

TEST_F(SharpPictures, ArePrintedAsTheirDefinitionSays) {
    test::withEachInstructionSet([&] {
        for (int run = 0; run < 400; ++run) {
            const Picture picture = anyPicture(60);
            const FitRules fit = rules(150);
            const bool mayUseThreads = chance(random_, 20);
            ASSERT_EQ(printed(opened(picture, fit, mayUseThreads), between(random_, 1, 40)),
                      slowlyPrinted(picture, fit))
                << "run " << run << ", " << picture.width << " x " << picture.height
                << ", orientation " << picture.orientation << ", " << described(fit);
        }
    });
}

TEST_F(SharpPictures, HaveEveryOrientationTurnAndFit) {
    Picture picture = fewColoured(7, 5, 18);
    for (picture.orientation = 1; picture.orientation <= 8; ++picture.orientation) {
        for (int turn = 0; turn <= 4; ++turn) {
            for (int fit = 0; fit <= 4; ++fit) {
                for (const std::int32_t side : {3, 6, 7, 20}) {
                    const FitRules all{static_cast<Fit>(fit), static_cast<Turn>(turn), side, 6};
                    ASSERT_EQ(printed(opened(picture, all)), slowlyPrinted(picture, all))
                        << "orientation " << picture.orientation << ", " << described(all);
                }
            }
        }
    }
}

TEST_F(SharpPictures, MayHaveSidesOfOnePixel) {
    for (const auto& [width, height] : {std::pair{1, 1}, {1, 90}, {90, 1}}) {
        const Picture picture = fewColoured(width, height, 18);
        for (int run = 0; run < 50; ++run) {
            const FitRules fit = rules(70);
            ASSERT_EQ(printed(opened(picture, fit)), slowlyPrinted(picture, fit)) << described(fit);
        }
    }
}

TEST_F(SharpPictures, AreNotResampledAtTheirOwnSize) {
    const Picture picture = test::randomPicture(random_, 200);
    const GreyPicture own = printed(opened(picture, kOwnSize));
    for (std::size_t at = 0; at < picture.pixels.size(); ++at)
        ASSERT_EQ(own.values[at], luminance(picture.pixels[at])) << at;
}

TEST_F(SharpPictures, LieOnWhiteWhereTheyAreTransparent) {
    const Picture picture{4, 1, {0x00000000, 0x80000000, 0xFF000000, 0x80000080}, 1};
    EXPECT_EQ(printed(opened(picture, kOwnSize)).values, (Bytes{255, 127, 0, 165}));
}

TEST_F(SharpPictures, OfFewColoursAreEnlargedDotForDotByWholeNumbers) {
    const Picture code = fewColoured(29, 29, 2);
    const GreyPicture enlarged = printed(opened(code, {Fit::kContain, Turn::k0, 29 * 4, 29 * 4}));
    ASSERT_EQ(enlarged.values.size(), 29U * 29U * 16U);
    const GreyPicture own = printed(opened(code, kOwnSize));
    for (std::size_t row = 0; row < 29 * 4; ++row) {
        for (std::size_t column = 0; column < 29 * 4; ++column) {
            ASSERT_EQ(enlarged.values[row * 29 * 4 + column],
                      own.values[row / 4 * 29 + column / 4]);
        }
    }
}

TEST_F(SharpPictures, OfBlackAndWhiteStaySo) {
    const Picture code = fewColoured(97, 61, 2);
    for (int run = 0; run < 100; ++run) {
        const FitRules fit = rules(300);
        const GreyPicture picture = printed(opened(code, fit));
        ASSERT_TRUE(std::ranges::all_of(picture.values, [](Byte value) {
            return value == 0 || value == 255;
        })) << described(fit);
    }
}

TEST_F(SharpPictures, OfBlackAndWhiteAreBlackWhereHalfOfADotIs) {
    constexpr UInt32 kBlack = 0xFF000000;
    constexpr UInt32 kWhite = 0xFFFFFFFF;
    const Picture half{4, 2, {kBlack, kWhite, kWhite, kWhite, kWhite, kBlack, kBlack, kWhite}, 1};
    EXPECT_EQ(printed(opened(half, {Fit::kStretch, Turn::k0, 2, 1})).values, (Bytes{0, 255}));
}

TEST_F(SharpPictures, WithMoreThanSixteenColoursAreBlended) {
    Picture picture{17, 1, {}, 1};
    for (unsigned grey = 0; grey < 17; ++grey)
        picture.pixels.push_back(pictures::premultipliedPixel(grey, grey, grey, 255) |
                                 (grey == 16 ? 0x00FFFFFF : 0));
    const GreyPicture enlarged = printed(opened(picture, {Fit::kStretch, Turn::k0, 34, 2}));
    EXPECT_GT(std::set<Byte>(enlarged.values.begin(), enlarged.values.end()).size(), 17U);
}

TEST_F(SharpPictures, ComeFromThreadsTheSame) {
    const Picture picture = samplesOf(1100, 700);
    samples::PngPlan plan;
    plan.width = 1100;
    plan.height = 700;
    plan.colourType = 2;
    for (const UInt32 pixel : picture.pixels) {
        for (const unsigned shift : {0U, 8U, 16U})
            plan.samples.push_back(static_cast<Byte>(pixel >> shift & 0xFF));
    }
    const Bytes file = samples::pngFile(plan);
    for (const std::int32_t side : {500, 1100, 1300}) {
        const FitRules fit{Fit::kContain, Turn::k0, side, side};
        const GreyPicture alone = printed(opened(file, fit, false), 64);
        EXPECT_EQ(printed(opened(file, fit, true), 5), alone);
        EXPECT_EQ(printed(opened(picture, fit, true), 64), alone);
        EXPECT_EQ(opened(file, fit, true).rows->next(1).size(),
                  alone.values.size() / static_cast<std::size_t>(alone.height))
            << "may end before their last row";
    }
}

TEST_F(SharpPictures, KeepTheirFile) {
    samples::PngPlan plan;
    plan.samples = {1, 2, 3, 255};
    auto file = std::make_shared<const Bytes>(samples::pngFile(plan));
    const SharpPicture picture = openPicture(file, kOwnSize, true);
    file.reset();
    EXPECT_EQ(readAll(*picture.rows).values.size(), 1U);
}

TEST_F(SharpPictures, ComeFromFilesOfEveryKindOfPngAndBmp) {
    if (!samples::haveCorpus()) GTEST_SKIP() << "no sample files";
    for (const std::string folder : {"png", "bmp/g", "bmp/q"}) {
        for (const std::string& name : samples::corpusNames(folder, "." + folder.substr(0, 3))) {
            const Bytes file = samples::corpusFile(folder + "/" + name);
            const auto decoded = pictures::decodePicture(file);
            const FitRules fit = rules(80);
            if (!decoded.picture || decoded.picture->width > 300) continue;
            ASSERT_EQ(printed(opened(file, fit, chance(random_, 50))),
                      slowlyPrinted(*decoded.picture, fit))
                << name << ", " << described(fit);
        }
    }
}

}  // namespace
}  // namespace tavio::sharp
