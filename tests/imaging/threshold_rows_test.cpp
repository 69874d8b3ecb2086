#include "TavioIpadSDK/imaging/threshold_rows.h"

#include <algorithm>
#include <cstddef>
#include <random>
#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/instruction_sets.h"
#include "support/random_picture.h"

namespace tavio::imaging {
namespace {

using Words = std::vector<UInt32>;

constexpr int kWidest = 130;
constexpr Byte kGuard = 0xA5;

// The rule literally, in double: 0 if the truncated grey value is below 128.
Byte entryLiterally(UInt32 word) {
    double grey = 0.299 * (word & 255);
    grey = grey + 0.587 * ((word >> 8) & 255);
    grey = grey + 0.114 * ((word >> 16) & 255);
    return static_cast<int>(grey) < 128 ? 0 : 1;
}

std::size_t paddedLiterally(std::size_t width) {
    return (width + 31) / 32 * 32;
}

Bytes thresholdLiterally(const Words& pixels, std::size_t width) {
    Bytes entries;
    for (std::size_t row = pixels.size() / width; row > 0; --row) {
        for (std::size_t x = 0; x < width; ++x)
            entries.push_back(entryLiterally(pixels[(row - 1) * width + x]));
        entries.insert(entries.end(), paddedLiterally(width) - width, 1);
    }
    return entries;
}

// The colours whose weighted sum is exactly 128 before any rounding, with some alpha on top.
Words tieColours() {
    Words colours;
    for (UInt32 red = 0; red < 256; ++red) {
        for (UInt32 green = 0; green < 256; ++green) {
            const int rest = 128000 - static_cast<int>(299 * red + 587 * green);
            if (rest < 0 || rest % 114 != 0 || rest / 114 > 255) continue;
            const UInt32 blue = static_cast<UInt32>(rest / 114);
            colours.push_back(red | green << 8 | blue << 16 | (red * 7) << 24);
        }
    }
    return colours;
}

Bytes thresholded(std::span<const UInt32> pixels, std::size_t width) {
    Bytes entries(pixels.size() / width * paddedLiterally(width), 0x5A);
    thresholdRows(pixels, static_cast<std::int32_t>(width), entries);
    return entries;
}

UInt32 anyColour(test::Random& random) {
    return static_cast<UInt32>(random());
}

UInt32 nearlyMidGrey(test::Random& random) {
    const auto near = [&] { return static_cast<UInt32>(test::between(random, 126, 130)); };
    return near() | near() << 8 | near() << 16 | (anyColour(random) & 0xFF000000);
}

UInt32 fullOrEmpty(test::Random& random) {
    const UInt32 bits = anyColour(random);
    UInt32 word = 0;
    for (int i = 0; i < 4; ++i) word |= ((bits >> i) & 1) * (UInt32{0xFF} << 8 * i);
    return word;
}

UInt32 tieOrAny(test::Random& random) {
    static const Words colours = tieColours();
    return test::chance(random, 30) ? colours[random() % colours.size()] : anyColour(random);
}

void expectLiteralOnRandomPictures(UInt32 (*pixel)(test::Random&)) {
    test::withEachInstructionSet([&] {
        const unsigned seed = std::random_device{}();
        SCOPED_TRACE("seed " + std::to_string(seed));
        test::Random random(seed);
        for (std::size_t width = 1; width <= kWidest; ++width) {
            for (const std::size_t height : {0U, 1U, 2U, 3U, 5U}) {
                Words pixels(width * height);
                std::generate(pixels.begin(), pixels.end(), [&] { return pixel(random); });
                ASSERT_EQ(thresholded(pixels, width), thresholdLiterally(pixels, width))
                    << width << " x " << height;
            }
        }
    });
}

TEST(ThresholdRows, EqualsItsLiteralTwinOnNoise) {
    expectLiteralOnRandomPictures(anyColour);
}

TEST(ThresholdRows, EqualsItsLiteralTwinAroundMidGrey) {
    expectLiteralOnRandomPictures(nearlyMidGrey);
}

TEST(ThresholdRows, EqualsItsLiteralTwinOnFullAndEmptyComponents) {
    expectLiteralOnRandomPictures(fullOrEmpty);
}

TEST(ThresholdRows, EqualsItsLiteralTwinOnScatteredTies) {
    expectLiteralOnRandomPictures(tieOrAny);
}

TEST(ThresholdRows, DecidesEachTieAlikeInEachPlaceOfAVector) {
    const Words colours = tieColours();
    ASSERT_EQ(colours.size(), 111U);
    constexpr std::size_t kSide = 64;
    test::withEachInstructionSet([&] {
        for (const UInt32 colour : colours) {
            for (const UInt32 around : {0x00000000U, 0xFFFFFFFFU}) {
                // Row i holds the tie in column i.
                Words pixels(kSide * kSide, around);
                Bytes expected(kSide * kSide, entryLiterally(around));
                for (std::size_t i = 0; i < kSide; ++i) {
                    pixels[i * kSide + i] = colour;
                    expected[(kSide - 1 - i) * kSide + i] = entryLiterally(colour);
                }
                ASSERT_EQ(thresholded(pixels, kSide), expected) << std::hex << colour;
            }
        }
    });
}

TEST(ThresholdRows, DecidesEveryColourAsTheDoubleFormulaDoes) {
    Words row(65536);
    Bytes expected(row.size());
    for (UInt32 green = 0; green < 256; ++green) {
        for (UInt32 i = 0; i < 65536; ++i) row[i] = (i & 0xFF) | green << 8 | (i & 0xFF00) << 8;
        std::transform(row.begin(), row.end(), expected.begin(), entryLiterally);
        test::withEachInstructionSet(
            [&] { ASSERT_EQ(thresholded(row, row.size()), expected) << "green " << green; });
    }
}

TEST(ThresholdRows, EqualsItsLiteralTwinOnLongRowsFromAnyAddress) {
    test::withEachInstructionSet([] {
        const unsigned seed = std::random_device{}();
        SCOPED_TRACE("seed " + std::to_string(seed));
        test::Random random(seed);
        for (int i = 0; i < 8; ++i) {
            const auto skipped = static_cast<std::size_t>(test::between(random, 0, 15));
            const auto width = static_cast<std::size_t>(test::between(random, 1000, 6000));
            Words pixels(skipped + 3 * width);
            std::generate(pixels.begin(), pixels.end(), [&] { return tieOrAny(random); });
            const Words used(pixels.begin() + static_cast<std::ptrdiff_t>(skipped), pixels.end());
            ASSERT_EQ(thresholded(std::span(pixels).subspan(skipped), width),
                      thresholdLiterally(used, width))
                << skipped << ", " << width;
        }
    });
}

TEST(ThresholdRows, TakesNoAccountOfAlpha) {
    test::withEachInstructionSet([] {
        for (const UInt32 alpha : {0U, 1U, 127U, 128U, 255U}) {
            const Words black(100, 0x007F7F7F | alpha << 24);
            const Words white(100, 0x00818181 | alpha << 24);
            Bytes expected(128, 0);
            std::fill(expected.begin() + 100, expected.end(), static_cast<Byte>(1));
            EXPECT_EQ(thresholded(black, 100), expected) << alpha;
            EXPECT_EQ(thresholded(white, 100), Bytes(128, 1)) << alpha;
        }
    });
}

TEST(ThresholdRows, WritesNothingAroundTheEntries) {
    test::withEachInstructionSet([] {
        for (std::size_t width = 1; width <= kWidest; ++width) {
            const Words pixels(3 * width, 0);
            Bytes guarded(3 * paddedLiterally(width) + 128, kGuard);
            const std::span<Byte> entries =
                std::span(guarded).subspan(64).first(guarded.size() - 128);
            thresholdRows(pixels, static_cast<std::int32_t>(width), entries);
            for (std::size_t i = 0; i < 64; ++i) {
                ASSERT_EQ(guarded[i], kGuard) << width << " in front: " << i;
                ASSERT_EQ(guarded[guarded.size() - 64 + i], kGuard) << width << " after: " << i;
            }
            EXPECT_EQ(std::count(entries.begin(), entries.end(), kGuard), 0) << width;
        }
    });
}

TEST(ThresholdRows, LeavesEverythingAloneWithoutWidth) {
    Bytes entries(64, kGuard);
    const Words pixels(10, 0);
    thresholdRows(pixels, 0, entries);
    thresholdRows(pixels, -5, entries);
    thresholdRows({}, 5, {});
    EXPECT_EQ(entries, Bytes(64, kGuard));
}

}  // namespace
}  // namespace tavio::imaging
