#include "TavioIpadSDK/sharp/band_costs.h"

#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

#include "TavioIpadSDK/sharp/drawn_out.h"
#include "support/instruction_sets.h"
#include "support/random_picture.h"

namespace tavio::sharp {
namespace {

using Words = std::vector<std::uint64_t>;

bool isBlack(const Words& words, std::size_t row, std::size_t column) {
    return (words[kBlockStride * (column / 64) + row] >> (63 - column % 64) & 1) != 0;
}

// Column by column: each black one pays for itself and for `price` more, but for none twice.
std::uint64_t costOneByOne(const Words& words, std::size_t row, std::size_t height, int price) {
    const std::size_t columns = words.size() / kBlockStride * 64;
    std::uint64_t cost = 0;
    std::size_t paidUpTo = 0;
    for (std::size_t column = 0; column < columns; ++column) {
        bool isInk = false;
        for (std::size_t y = row; y < row + height; ++y) isInk = isInk || isBlack(words, y, column);
        if (!isInk) continue;
        const std::size_t end = column + static_cast<std::size_t>(price) + 1;
        cost += end - std::max(paidUpTo, column);
        paidUpTo = end;
    }
    return cost;
}

// Words that are blank, full, sparse or noise.
Words randomBlock(test::Random& random, std::size_t words) {
    Words block(kBlockStride * words);
    for (std::uint64_t& word : block) {
        switch (test::between(random, 0, 4)) {
            case 0:
                word = random();
                break;
            case 1:
                word = std::uint64_t{1} << test::between(random, 0, 63);
                break;
            case 2:
                word = test::chance(random, 10) ? ~std::uint64_t{0} : 0;
                break;
            default:
                break;
        }
    }
    return block;
}

TEST(BandCosts, EqualTheirSlowTwinWithEveryInstructionSet) {
    test::withEachInstructionSet([] {
        for (unsigned seed = 0; seed < 60; ++seed) {
            test::Random random(seed);
            const auto words = static_cast<std::size_t>(test::between(random, 1, 6));
            const Words block = randomBlock(random, words);
            const auto rows = static_cast<std::size_t>(test::between(random, 1, 64));
            const int price = test::between(random, 8, kMaxPrice);
            const int minHeight = test::between(random, 1, kMaxBandRows);
            Words ors(block.size(), 0xA5), costs(kMaxBandRows * kBlockRows);
            bandCosts(block, rows, price, minHeight, ors, costs);
            for (auto height = static_cast<std::size_t>(minHeight); height <= 8; ++height)
                for (std::size_t row = 0; row < rows; ++row)
                    ASSERT_EQ(costs[kBlockRows * (height - 1) + row],
                              costOneByOne(block, row, height, price))
                        << "seed " << seed << ", row " << row << ", height " << height;
        }
    });
}

// Dots are counted in bytes that would overflow after 31 words.
TEST(BandCosts, OfAWideBlackBandAreItsColumnsAndThePrice) {
    test::withEachInstructionSet([] {
        for (const std::size_t words : {30U, 31U, 32U, 62U, 63U, 200U}) {
            const Words block(kBlockStride * words, ~std::uint64_t{0});
            Words ors(block.size()), costs(kMaxBandRows * kBlockRows);
            bandCosts(block, kBlockRows, 20, 1, ors, costs);
            for (const std::uint64_t cost : costs) ASSERT_EQ(cost, 64 * words + 20);
        }
    });
}

TEST(DrawnOut, IsEachDotAndThoseToTheRightOfIt) {
    EXPECT_EQ(drawnOut(std::uint64_t{1} << 63, 0, 3), std::uint64_t{0xF} << 60);
    EXPECT_EQ(drawnOut(1, 0, 3), 1U);
    EXPECT_EQ(drawnOut(0, 1, 3), std::uint64_t{7} << 61);
    EXPECT_EQ(drawnOut(0, 6, 3), std::uint64_t{3} << 62);  // of two dots the right one reaches on
    EXPECT_EQ(drawnOut(0, 8, 3), 0U);
    for (int columns = 1; columns <= 63; ++columns) {
        ASSERT_EQ(drawnOut(std::uint64_t{1} << 63, 0, columns),
                  ~std::uint64_t{0} << (63 - columns));
        ASSERT_EQ(drawnOut(0, 1, columns), ~std::uint64_t{0} << (64 - columns));
    }
}

}  // namespace
}  // namespace tavio::sharp
