#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "TavioIpadSDK/stretch/average_rows.h"
#include "TavioIpadSDK/stretch/axis.h"
#include "TavioIpadSDK/stretch/blend_rows.h"
#include "TavioIpadSDK/stretch/grow_columns.h"
#include "TavioIpadSDK/stretch/shrink_columns.h"
#include "stretch/slow_resample.h"
#include "support/instruction_sets.h"

namespace tavio::stretch {
namespace {

using Random = std::mt19937_64;

constexpr std::uint64_t kSeed = 20240611;
constexpr std::int64_t kWhite = std::int64_t{255} * 65536;

std::int64_t between(Random& random, std::int64_t min, std::int64_t max) {
    return std::uniform_int_distribution<std::int64_t>(min, max)(random);
}

// Bytes of which many are 0 or 255, so that differences are as large as they can be.
std::vector<UInt32> randomRow(Random& random, std::int32_t width, bool isOpaqueRow) {
    const auto byte = [&random] {
        const std::int64_t value = between(random, -100, 355);
        return static_cast<UInt32>(std::clamp<std::int64_t>(value, 0, 255));
    };
    std::vector<UInt32> row;
    for (std::int32_t column = 0; column < width; ++column) {
        const UInt32 alpha = isOpaqueRow ? 255 : byte();
        row.push_back(byte() | (byte() << 8) | (byte() << 16) | (alpha << 24));
    }
    if (!isOpaqueRow) row.at(row.size() / 2) &= 0xFEFFFFFF;
    return row;
}

float& valueOf(PassedRow& row, std::size_t column, std::size_t channel) {
    const std::size_t at = channel * kBlockColumns + column % kBlockColumns;
    return row.blocks[column / kBlockColumns].values[at];
}

// All values of `row`, brought to `target` columns, exactly.
std::vector<std::int64_t> exactlyPassed(const std::vector<UInt32>& row, std::int64_t target) {
    const auto source = static_cast<std::int64_t>(row.size());
    std::vector<std::int64_t> values;
    for (std::int64_t column = 0; column < target; ++column) {
        std::array<std::int64_t, kChannels> sums{};
        for (const Weight& part : weightsOf(source, column, target)) {
            for (std::size_t channel = 0; channel < kChannels; ++channel) {
                const UInt32 pixel = row[static_cast<std::size_t>(part.from)];
                sums[channel] += ((pixel >> (8 * channel)) & 0xFF) * part.weight;
            }
        }
        for (const std::int64_t sum : sums)
            values.push_back(passedValue(sum, totalWeight(source, target)) + kAdded);
    }
    return values;
}

template <typename Pass>
void expectExactColumns(Random& random, std::int32_t source, std::int32_t target) {
    SCOPED_TRACE(std::to_string(source) + " to " + std::to_string(target));
    for (const bool isOpaqueRow : {false, true}) {
        const std::vector<UInt32> row = randomRow(random, source, isOpaqueRow);
        const std::vector<std::int64_t> expected = exactlyPassed(row, target);
        test::withEachInstructionSet([&] {
            Pass pass(Axis(source, target));
            PassedRow passed;
            pass.pass(row, passed);
            EXPECT_EQ(passed.isOpaque, isOpaqueRow);
            std::vector<std::int64_t> values;
            for (std::size_t column = 0; column < static_cast<std::size_t>(target); ++column) {
                for (std::size_t channel = 0; channel < kChannels; ++channel)
                    values.push_back(static_cast<std::int64_t>(valueOf(passed, column, channel)));
            }
            EXPECT_TRUE(values == expected);
        });
    }
}

TEST(GrowColumns, GivesExactValuesAtEverySmallSize) {
    Random random(kSeed);
    for (std::int32_t source = 1; source <= 40; ++source) {
        for (std::int32_t target = source; target <= 70; ++target) {
            expectExactColumns<GrowColumns>(random, source, target);
            if (testing::Test::HasFailure()) return;
        }
    }
}

// Vectors are exact for less than 65536 columns; from there on the plain form is used.
TEST(GrowColumns, GivesExactValuesAroundTheMostColumnsThatVectorsCanHave) {
    Random random(kSeed);
    for (const std::int32_t target : {32768, 65521, 65534, 65535, 65536, 131070, 131072}) {
        for (const std::int32_t source : {2, 257, 4000, 21001, 32749})
            expectExactColumns<GrowColumns>(random, source, target);
    }
}

TEST(GrowColumns, GivesExactValuesForPictures) {
    Random random(kSeed);
    for (const auto& [source, target] :
         {std::pair{4000, 5100}, {612, 5100}, {4000, 13900}, {2550, 5100}, {4000, 6000}, {1, 5100}})
        expectExactColumns<GrowColumns>(random, source, target);
}

TEST(ShrinkColumns, GivesExactValuesAtEverySmallSize) {
    Random random(kSeed);
    for (std::int32_t source = 2; source <= 70; ++source) {
        for (std::int32_t target = 1; target < std::min(source, 41); ++target) {
            expectExactColumns<ShrinkColumns>(random, source, target);
            if (testing::Test::HasFailure()) return;
        }
    }
}

// Vectors are exact for up to 2^20 source pixels; from there on the plain form is used.
TEST(ShrinkColumns, GivesExactValuesAroundTheMostPixelsThatVectorsCanHave) {
    Random random(kSeed);
    constexpr std::int32_t kMost = 1 << 20;
    expectExactColumns<ShrinkColumns>(random, kMost - 1, 77777);
    expectExactColumns<ShrinkColumns>(random, kMost, 300'001);
    expectExactColumns<ShrinkColumns>(random, kMost, 3);
    expectExactColumns<ShrinkColumns>(random, kMost + 1, 1000);
}

TEST(ShrinkColumns, GivesExactValuesOfAWhiteRow) {
    for (const std::int32_t width : {1 << 20, (1 << 23) + (1 << 16)}) {
        const std::vector<UInt32> row(static_cast<std::size_t>(width), 0xFFFFFFFF);
        test::withEachInstructionSet([&row, width] {
            ShrinkColumns pass(Axis(width, 1));
            PassedRow passed;
            pass.pass(row, passed);
            EXPECT_EQ(valueOf(passed, 0, 0), kWhite + kAdded);
        });
    }
}

// Values of passed rows, each channel of each column on its own.
struct Sample {
    std::vector<std::int64_t> rows;  // without what is added to passed rows
    UInt32 expected = 0;
};

constexpr std::size_t kSamples = 77 * kChannels;  // columns that do not fill whole blocks

// The rows that have these samples, one after the other in channels and columns.
std::vector<PassedRow> passedRows(const std::vector<Sample>& samples, std::size_t count) {
    std::vector<PassedRow> rows(count);
    for (std::size_t row = 0; row < count; ++row) {
        rows[row].blocks.resize(blocksOf(samples.size() / kChannels));
        for (std::size_t at = 0; at < samples.size(); ++at) {
            valueOf(rows[row], at / kChannels, at % kChannels) =
                static_cast<float>(samples[at].rows[row] + kAdded);
        }
    }
    return rows;
}

std::vector<UInt32> expectedPixels(const std::vector<Sample>& samples) {
    std::vector<UInt32> pixels(samples.size() / kChannels);
    for (std::size_t at = 0; at < samples.size(); ++at)
        pixels[at / kChannels] |= samples[at].expected << (8 * (at % kChannels));
    return pixels;
}

// A blend that is a half byte, or misses one by hardly anything; or any.
Sample randomBlend(Random& random, std::int64_t beyond, std::int64_t total) {
    for (;;) {
        const std::int64_t max = between(random, 0, 3) == 0 ? 3 : kWhite;
        const std::int64_t step = between(random, -max, max);
        const std::int64_t half = 65536 * between(random, 0, 254) + 32768;
        const std::int64_t missing = between(random, -4, 4);
        const std::int64_t upper = half - step * beyond / total + missing;
        const std::int64_t lower = upper + step;
        if (std::min(upper, lower) < 0 || std::max(upper, lower) > kWhite) continue;
        const std::int64_t sum = upper * (total - beyond) + lower * beyond;
        return {{upper, lower}, static_cast<UInt32>((sum + total * 32768) / (total * 65536))};
    }
}

void expectExactBlends(Random& random, std::int64_t beyond, std::int64_t total) {
    SCOPED_TRACE(std::to_string(beyond) + " of " + std::to_string(total));
    std::vector<Sample> samples(kSamples);
    for (Sample& sample : samples) sample = randomBlend(random, beyond, total);
    const std::vector<PassedRow> rows = passedRows(samples, 2);
    test::withEachInstructionSet([&] {
        std::vector<UInt32> pixels(samples.size() / kChannels);
        blendRows(rows[0], rows[1], static_cast<std::uint64_t>(beyond),
                  static_cast<std::uint64_t>(total), pixels);
        EXPECT_TRUE(pixels == expectedPixels(samples));
    });
}

// Vectors are exact for totals of up to 2^24; from there on the plain form is used.
TEST(BlendRows, DecidesExactlyNextToHalfBytes) {
    Random random(kSeed);
    for (const std::int64_t total : {2, 4, 6, 10, 22, 64, 1002, 13200, 36000, 65536, 1 << 20,
                                     (1 << 24) - 2, 1 << 24, (1 << 24) + 2, 1 << 29}) {
        for (int round = 0; round < 25; ++round)
            expectExactBlends(random, between(random, 0, total - 1), total);
        for (const std::int64_t beyond : {std::int64_t{0}, total / 2, total - 1})
            expectExactBlends(random, beyond, total);
    }
}

// Three rows whose weighted mean is a half byte, or misses one by hardly anything.
Sample randomMean(Random& random, const std::array<std::int64_t, 3>& weights, std::int64_t total) {
    for (;;) {
        const std::int64_t first = between(random, 0, kWhite);
        std::int64_t rest = total * (65536 * between(random, 0, 254) + 32768) - first * weights[0];
        if (rest < 0) continue;
        const std::int64_t second = std::min(rest / weights[1], kWhite);
        rest -= second * weights[1];
        const std::int64_t third = rest / weights[2] + between(random, -1, 1);
        if (third < 0 || third > kWhite) continue;
        const std::int64_t sum = first * weights[0] + second * weights[1] + third * weights[2];
        return {{first, second, third},
                static_cast<UInt32>((sum + total * 32768) / (total * 65536))};
    }
}

void expectExactMeans(Random& random, std::int64_t total) {
    SCOPED_TRACE(total);
    const std::int64_t second = std::max<std::int64_t>(1, between(random, total / 4, total / 2));
    const std::array<std::int64_t, 3> weights = {total - second - 1, second, 1};
    std::vector<Sample> samples(kSamples);
    for (Sample& sample : samples) sample = randomMean(random, weights, total);
    const std::vector<PassedRow> rows = passedRows(samples, 3);
    test::withEachInstructionSet([&] {
        AverageRows average(static_cast<std::uint64_t>(total));
        std::vector<UInt32> pixels(samples.size() / kChannels);
        for (int time = 0; time < 2; ++time) {
            for (std::size_t row = 0; row < rows.size(); ++row)
                average.add(rows[row], static_cast<std::uint64_t>(weights[row]));
            average.average(pixels);
            EXPECT_TRUE(pixels == expectedPixels(samples)) << time;
        }
    });
}

// Vectors are exact for totals of up to 2^26; from there on the plain form is used.
TEST(AverageRows, DecidesExactlyNextToHalfBytes) {
    Random random(kSeed);
    for (const std::int64_t total : {3, 4, 5, 7, 100, 3000, 65535, 65536, 1 << 20, (1 << 26) - 1,
                                     1 << 26, (1 << 26) + 1, 1 << 28}) {
        for (int round = 0; round < 10; ++round) expectExactMeans(random, total);
    }
}

}  // namespace
}  // namespace tavio::stretch
