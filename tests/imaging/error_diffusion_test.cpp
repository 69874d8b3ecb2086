#include "TavioIpadSDK/imaging/error_diffusion.h"

#include <algorithm>
#include <random>

#include <gtest/gtest.h>

#include "TavioIpadSDK/imaging/diffuse_picture.h"
#include "TavioIpadSDK/imaging/dither.h"
#include "TavioIpadSDK/imaging/entries.h"
#include "imaging/diffused_pictures.h"
#include "support/instruction_sets.h"
#include "support/literal_imaging.h"

namespace tavio::imaging {
namespace {

using pictures::Picture;
using test::between;
using test::pictureOfKind;
using test::Random;

// The picture's entries, converted in strips of `minRows` to `maxRows` rows.
Bytes converted(const Picture& picture, Random& random, int minRows, int maxRows) {
    const auto width = static_cast<std::size_t>(picture.width);
    const auto padded = static_cast<std::size_t>(paddedWidth(picture.width));
    Bytes entries(padded * static_cast<std::size_t>(picture.height), 0xA5);
    ErrorDiffusion diffusion(picture.width);
    std::span<const UInt32> pixels(picture.pixels);
    std::span<Byte> left(entries);
    for (int row = 0; row < picture.height;) {
        const int limit = std::min(maxRows, picture.height - row);
        const int count = between(random, std::min(minRows, limit), limit);
        const auto rows = static_cast<std::size_t>(count);
        diffusion.convert(pixels.first(rows * width), left.last(rows * padded));
        pixels = pixels.subspan(rows * width);
        left = left.first(left.size() - rows * padded);
        row += count;
    }
    return entries;
}

void expectLiteral(const Picture& picture, Random& random) {
    SCOPED_TRACE(testing::Message() << picture.width << " x " << picture.height);
    const Bytes expected = test::ditherLiterally(picture);
    test::withEachInstructionSet([&] {
        ASSERT_EQ(converted(picture, random, picture.height, picture.height), expected);
        ASSERT_EQ(converted(picture, random, 1, 70), expected);
    });
}

class ErrorDiffusionTest : public testing::Test {
  protected:
    Picture ofAnyKind(int width, int height) {
        return pictureOfKind(random, between(random, 0, test::kKinds - 1), width, height);
    }

    unsigned seed = std::random_device{}();
    Random random{seed};
    testing::ScopedTrace trace{__FILE__, __LINE__, seed};
};

TEST_F(ErrorDiffusionTest, EqualsItsLiteralTwinAtEverySmallSize) {
    for (int width = 1; width <= 40; ++width) {
        for (int height = 1; height <= 40 && !HasFatalFailure(); ++height)
            expectLiteral(ofAnyKind(width, height), random);
    }
}

TEST_F(ErrorDiffusionTest, EqualsItsLiteralTwinAtEveryWidthAndEveryHeightTo130) {
    for (int side = 1; side <= 130 && !HasFatalFailure(); ++side) {
        expectLiteral(ofAnyKind(side, between(random, 1, 130)), random);
        expectLiteral(ofAnyKind(between(random, 1, 130), side), random);
    }
}

// Wide enough that some steps have no edge, and two strips are in work at the same time.
TEST_F(ErrorDiffusionTest, EqualsItsLiteralTwinOnWidePicturesOfEveryKind) {
    for (int kind = 0; kind < test::kKinds && !HasFatalFailure(); ++kind) {
        SCOPED_TRACE(kind);
        const int width = between(random, 400, 1200);
        expectLiteral(pictureOfKind(random, kind, width, between(random, 100, 300)), random);
    }
}

TEST_F(ErrorDiffusionTest, EqualsItsLiteralTwinAtFullWidth) {
    expectLiteral(ofAnyKind(5100, 200), random);
}

TEST_F(ErrorDiffusionTest, EqualsTheWholePictureForm) {
    const Picture picture = ofAnyKind(333, 222);
    const std::vector<ArgbColor> records = test::diffusedRecords(picture);
    const Bytes entries = converted(picture, random, 1, 100);
    for (std::size_t y = 0; y < 222; ++y)
        for (std::size_t x = 0; x < 333; ++x)
            ASSERT_EQ(entries[(221 - y) * 352 + x] == BLACK, records[y * 333 + x].Red == 0);
}

TEST_F(ErrorDiffusionTest, GoesOnWithAnotherInstructionSet) {
    const Picture picture = ofAnyKind(300, 90);
    const Bytes expected = test::ditherLiterally(picture);
    const std::span<const UInt32> pixels(picture.pixels);
    test::withEachInstructionSet([&] {
        Bytes entries(expected.size());
        ErrorDiffusion diffusion(300);
        diffusion.convert(pixels.first(40 * 300), std::span(entries).last(40 * 320));
        machine::useInstructionSet(machine::InstructionSet::kPlain);
        diffusion.convert(pixels.subspan(40 * 300, 20 * 300),
                          std::span(entries).subspan(30 * 320, 20 * 320));
        machine::useInstructionSet(machine::availableInstructionSets().back());
        diffusion.convert(pixels.last(30 * 300), std::span(entries).first(30 * 320));
        EXPECT_EQ(entries, expected);
    });
}

TEST_F(ErrorDiffusionTest, TakesNoRowsAndNoColumns) {
    test::withEachInstructionSet([] {
        ErrorDiffusion(5).convert({}, {});
        ErrorDiffusion(0).convert({}, {});
        diffusePicture({}, 0, 7, {});
        diffusePicture({}, 7, 0, {});
        EXPECT_GE(ErrorDiffusion::bestStrip(), 1);
    });
}

// The exact sizes let AddressSanitizer see a step too far, these a write into what lies around.
TEST_F(ErrorDiffusionTest, WritesNothingAroundTheEntries) {
    test::withEachInstructionSet([&] {
        for (const int width : {1, 5, 64, 300}) {
            const Picture picture = ofAnyKind(width, 70);
            const auto size = static_cast<std::size_t>(paddedWidth(width)) * 70;
            Bytes entries(size + 256, 0xA5);
            ErrorDiffusion(width).convert(picture.pixels, std::span(entries).subspan(128, size));
            EXPECT_EQ(std::count(entries.begin(), entries.begin() + 128, 0xA5), 128);
            EXPECT_EQ(std::count(entries.end() - 128, entries.end(), 0xA5), 128);
        }
    });
}

}  // namespace
}  // namespace tavio::imaging
