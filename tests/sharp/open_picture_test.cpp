#include "TavioIpadSDK/sharp/open_picture.h"

#include <cstddef>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TavioIpadSDK/machine/instruction_set.h"
#include "TavioIpadSDK/pictures/picture_rows.h"
#include "pictures/sample_pictures.h"
#include "sharp/printed_twin.h"
#include "support/decode_picture.h"
#include "support/instruction_sets.h"
#include "support/random_picture.h"

namespace tavio::sharp {
namespace {

using pictures::Picture;
using pictures::Refusal;
using test::between;
using test::chance;
using test::Random;
namespace samples = pictures::samples;

constexpr std::uint64_t kSeed = 2025;

class SharpPictures : public testing::Test {
  protected:
    FitRules rules(std::int32_t maxSide) {
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
