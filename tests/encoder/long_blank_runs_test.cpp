#include "TavioIpadSDK/encoder/long_blank_runs.h"

#include <algorithm>
#include <random>

#include <gtest/gtest.h>

#include "encoder/byte_stream.h"
#include "support/instruction_sets.h"
#include "support/random_picture.h"

namespace tavio::encoder {
namespace {

using Runs = std::vector<BlankRun>;

// The parts of the runs between start and end that are long enough to be left out.
Runs clipped(std::span<const BlankRun> runs, std::int64_t start, std::int64_t end) {
    Runs inside;
    for (const BlankRun& run : runs) {
        const BlankRun piece = {std::max(run.start, start), std::min(run.end, end)};
        if (piece.end - piece.start >= kMinSkip) inside.push_back(piece);
    }
    return inside;
}

Runs runsOneByOne(const Bytes& stream, std::int64_t start, std::int64_t end) {
    Runs runs;
    for (std::int64_t i = start; i < end; ++i) {
        const auto at = static_cast<std::size_t>(i);
        if (at < stream.size() && stream[at] != 0) continue;
        if (runs.empty() || runs.back().end != i) runs.push_back({i, i});
        ++runs.back().end;
    }
    return clipped(runs, start, end);
}

// Runs of 17 to 21 zeros and other lengths, between one or more other bytes.
Bytes randomStream(test::Random& random, int size) {
    Bytes stream;
    while (static_cast<int>(stream.size()) < size) {
        const int kind = test::between(random, 0, 9);
        const int data = kind == 0 ? test::between(random, 1, 300) : test::between(random, 1, 3);
        const int blank = kind == 1   ? test::between(random, 1, 300)
                          : kind == 2 ? test::between(random, 1, 4)
                                      : test::between(random, 17, 21);
        stream.insert(stream.end(), static_cast<std::size_t>(data), 7);
        stream.insert(stream.end(), static_cast<std::size_t>(blank), 0);
    }
    stream.resize(static_cast<std::size_t>(size));
    return stream;
}

TEST(LongBlankRuns, AreThoseOf19AndMore) {
    for (std::int64_t length = 1; length <= 200; ++length) {
        for (const std::size_t before : {1U, 40U, 63U, 64U, 100U}) {
            Bytes bytes(before, 1);
            bytes.insert(bytes.end(), static_cast<std::size_t>(length), 0);
            bytes.push_back(1);
            ByteStream stream(bytes);
            LongBlankRuns runs(stream);
            const auto end = static_cast<std::int64_t>(bytes.size());
            const auto start = static_cast<std::int64_t>(before);
            ASSERT_EQ(clipped(runs.between(0, end), 0, end),
                      length < 19 ? Runs{} : (Runs{{start, start + length}}));
        }
    }
}

TEST(LongBlankRuns, EndInOneThatIsOpen) {
    ByteStream stream(Bytes{0, 1, 0, 0});
    LongBlankRuns runs(stream);
    const auto all = runs.between(0, LongBlankRuns::kOpen);
    EXPECT_EQ(Runs(all.begin(), all.end()), (Runs{{2, LongBlankRuns::kOpen}}));
    // The stream and the zeros that fill up its last block were gone through, no more.
    EXPECT_LE(runs.bytesMarked(), 4096U);
    ByteStream none{Bytes{}};
    LongBlankRuns noRuns(none);
    EXPECT_EQ(clipped(noRuns.between(5, 40), 5, 40), (Runs{{5, 40}}));
}

TEST(LongBlankRuns, AreNotLookedForWhereNobodyAsks) {
    ByteStream stream(Bytes(1000000, 0));
    LongBlankRuns runs(stream);
    runs.between(0, 10);
    EXPECT_EQ(clipped(runs.between(900000, 900030), 900000, 900030), (Runs{{900000, 900030}}));
    EXPECT_LE(runs.bytesMarked(), 2U * 4096U);
}

TEST(LongBlankRuns, EqualASlowTwinOnRandomStreamsWithEveryInstructionSet) {
    test::withEachInstructionSet([] {
        const unsigned first = std::random_device{}();
        for (unsigned seed = first; seed < first + 300; ++seed) {
            SCOPED_TRACE(seed);
            test::Random random(seed);
            const int size = test::between(random, 0, seed % 50 == 0 ? 200000 : 1500);
            const Bytes bytes = randomStream(random, size);
            ByteStream stream(bytes);
            LongBlankRuns runs(stream);
            std::int64_t start = 0;
            for (int call = 0; call < 12; ++call) {
                const std::int64_t end = start + test::between(random, 0, size / 2 + 100);
                stream.forget(static_cast<std::size_t>(start));
                ASSERT_EQ(clipped(runs.between(start, end), start, end),
                          runsOneByOne(bytes, start, end))
                    << start << " " << end;
                start += test::between(random, 0, test::chance(random, 20) ? size : 60);
            }
        }
    });
}

}  // namespace
}  // namespace tavio::encoder
