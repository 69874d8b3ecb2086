#include "TavioIpadSDK/encoder/line_map.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "support/random_picture.h"

namespace tavio::encoder {
namespace {

using Map = std::vector<LineParser>;

// The runs of `count` bytes of a whole stream.
std::size_t mapColumns(const Bytes& stream, std::int64_t start, std::int32_t count, Map& map) {
    const auto size = static_cast<std::int64_t>(stream.size());
    const auto first = static_cast<std::size_t>(std::min(start, size));
    const auto end = static_cast<std::size_t>(std::min(start + std::max(count, 0), size));
    return mapRuns(std::span(stream).subspan(first, end - first), start, count, map);
}

Map runsOf(const Bytes& stream, std::int64_t start, std::int32_t count) {
    Map map(LINEMAPMAX, {9, 9, DATA});
    const std::size_t used = mapColumns(stream, start, count, map);
    for (std::size_t i = used; i < map.size(); ++i) EXPECT_EQ(map[i], LineParser{}) << i;
    map.resize(used);
    return map;
}

// Byte by byte, bytes past the end counting as zeros.
Map runsOneByOne(const Bytes& stream, std::int64_t start, std::int32_t count) {
    Map map;
    for (std::int64_t i = start; i < start + count; ++i) {
        const bool isData = i < static_cast<std::int64_t>(stream.size()) &&
                            stream[static_cast<std::size_t>(i)] != 0;
        const std::int32_t type = isData ? DATA : ZEROS;
        if (map.empty() || map.back().block_type != type)
            map.push_back({static_cast<std::int32_t>(i), 0, type});
        ++map.back().count;
    }
    return map;
}

TEST(LineMap, ListsRunsOfBlankAndPrintingBytesInTurn) {
    const Bytes stream = {9, 9, 9, 1, 2, 0, 0, 0, 3, 0};
    EXPECT_EQ(runsOf(stream, 3, 7),
              (Map{{3, 2, DATA}, {5, 3, ZEROS}, {8, 1, DATA}, {9, 1, ZEROS}}));
}

TEST(LineMap, HasNoRunForACountOfZeroOrLess) {
    const Bytes stream = {1, 2, 3};
    EXPECT_EQ(runsOf(stream, 0, 0), Map{});
    EXPECT_EQ(runsOf(stream, 0, -5), Map{});
}

TEST(LineMap, CountsBytesBehindTheEndAsZeros) {
    EXPECT_EQ(runsOf({7, 7}, 1, 10), (Map{{1, 1, DATA}, {2, 9, ZEROS}}));
    EXPECT_EQ(runsOf({7, 0}, 0, 10), (Map{{0, 1, DATA}, {1, 9, ZEROS}}));
    EXPECT_EQ(runsOf({7}, 5, 3), (Map{{5, 3, ZEROS}}));
    EXPECT_EQ(runsOf({}, 0, INT32_MAX), (Map{{0, INT32_MAX, ZEROS}}));
}

TEST(LineMap, GrowsForABandOfMoreThan2500Runs) {
    Bytes stream;
    for (int i = 0; i < 6001; ++i) stream.push_back(static_cast<Byte>(i % 2));
    const Map map = runsOf(stream, 0, 6001);
    EXPECT_EQ(map, runsOneByOne(stream, 0, 6001));
    EXPECT_EQ(map.size(), 6001U);
    Map table(LINEMAPMAX);
    mapColumns(stream, 0, 6001, table);
    EXPECT_EQ(table.size(), 6001U);
    mapColumns(stream, 0, 7, table);
    EXPECT_EQ(table.size(), 6001U);  // never shrinks
}

TEST(LineMap, ListsTheSameRunsAsASlowTwinOnRandomStreams) {
    for (unsigned seed = 1; seed <= 2000; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        test::Random random(seed);
        Bytes stream;
        const int blank = test::between(random, 5, 95);
        for (int i = test::between(random, 0, 120); i > 0; --i)
            stream.push_back(test::chance(random, blank) ? Byte{0} : Byte{1});
        Map map;
        for (int call = 0; call < 5; ++call) {
            const int start = test::between(random, 0, 150);
            const int count = test::between(random, -2, 60);
            const std::size_t used = mapColumns(stream, start, count, map);
            ASSERT_EQ(Map(map.begin(), map.begin() + static_cast<std::ptrdiff_t>(used)),
                      runsOneByOne(stream, start, count));
        }
    }
}

}  // namespace
}  // namespace tavio::encoder
