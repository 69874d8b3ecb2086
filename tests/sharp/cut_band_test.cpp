#include "TavioIpadSDK/sharp/cut_band.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "support/literal_dots.h"
#include "support/random_dots.h"

namespace tavio::sharp {
namespace {

using test::between;

// Runs whose gaps are about as long as commands.
std::vector<DotRun> randomRuns(test::Random& random) {
    std::vector<DotRun> runs;
    std::int32_t end = between(random, 0, 20);
    for (int count = between(random, 1, 12); count > 0; --count) {
        const std::int32_t start = end + between(random, 1, 24);
        end = start + between(random, 1, test::chance(random, 20) ? 100 : 12);
        runs.push_back({start, end});
    }
    return runs;
}

Dots rowOf(const std::vector<DotRun>& runs) {
    return test::dotsWhere(runs.back().end, 1, [&](std::int32_t x, std::int32_t) {
        return std::ranges::any_of(
            runs, [x](const DotRun& run) { return x >= run.start && x < run.end; });
    });
}

DotsPlace randomPlace(test::Random& random, std::int32_t width) {
    const std::int32_t limit = test::chance(random, 50) ? 120 : 20'000;
    const std::int32_t row = between(random, 0, limit);
    const bool isLandscape = test::chance(random, 50);
    return {isLandscape, isLandscape ? row : row + width - 1, between(random, 0, limit)};
}

TEST(CutBand, TakesTheFewestBytes) {
    for (unsigned seed = 0; seed < 1500; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        test::Random random(seed);
        const std::vector<DotRun> runs = randomRuns(random);
        const Dots row = rowOf(runs);
        const DotsPlace place = randomPlace(random, row.width);
        BandCutter cutter(place);
        cutter.cut(runs, 0);
        ASSERT_EQ(cutter.bytes(), test::fewestBytesOfBand(row, place, 0, 1));
    }
}

TEST(CutBand, IsNoWorseIfShortBlankRunsAreJoinedBefore) {
    for (unsigned seed = 0; seed < 1500; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        test::Random random(seed);
        const std::vector<DotRun> runs = randomRuns(random);
        const DotsPlace place = randomPlace(random, runs.back().end);
        BandCutter cutter(place);
        cutter.cut(runs, 0);
        const std::uint64_t fewest = cutter.bytes();
        const std::int32_t joined = maxJoined(place, {0, 0, runs.back().end, 1}, 0);
        std::vector<DotRun> fewer;
        for (const DotRun& run : runs) {
            if (!fewer.empty() && run.start - fewer.back().end <= joined) {
                fewer.back().end = run.end;
            } else {
                fewer.push_back(run);
            }
        }
        cutter.cut(fewer, 0);
        ASSERT_EQ(cutter.bytes(), fewest);
    }
}

TEST(CutBand, GivesStretchesFromTheRight) {
    BandCutter cutter({true, 0, 0});
    const std::vector<DotRun> runs{{0, 5}, {10, 12}, {50, 60}};
    const auto stretches = cutter.cut(runs, 0);
    EXPECT_EQ(std::vector<DotRun>(stretches.begin(), stretches.end()),
              (std::vector<DotRun>{{50, 60}, {0, 12}}));
    EXPECT_EQ(cutter.bytes(), 24U + 23U);
}

}  // namespace
}  // namespace tavio::sharp
