// Both kernels that mark bytes of a stream.
#include <algorithm>
#include <random>

#include <gtest/gtest.h>

#include "TavioIpadSDK/encoder/mark_blanks.h"
#include "TavioIpadSDK/encoder/mark_positions.h"
#include "support/bitmaps.h"
#include "support/instruction_sets.h"
#include "support/random_picture.h"

namespace tavio::encoder {
namespace {

using Words = std::vector<std::uint64_t>;

bool isBlankAt(const Bytes& bytes, std::size_t at) {
    return at >= bytes.size() || bytes[at] == 0;
}

bool isPositionAt(const Bytes& bytes, std::size_t at) {
    const std::string command = "<RC";
    return at + 3 <= bytes.size() && std::equal(command.begin(), command.end(),
                                                bytes.begin() + static_cast<std::ptrdiff_t>(at));
}

template <typename IsMarked>
Words markedOneByOne(const Bytes& bytes, std::size_t words, IsMarked isMarked) {
    Words marks(words);
    for (std::size_t i = 0; i < 64 * words; ++i)
        if (isMarked(bytes, i)) marks[i / 64] |= std::uint64_t{1} << (i % 64);
    return marks;
}

Bytes randomBytes(test::Random& random, std::size_t size, std::string_view from) {
    Bytes bytes(size);
    const int blank = test::between(random, 0, 100);
    for (Byte& byte : bytes)
        byte =
            test::chance(random, blank) ? Byte{0} : static_cast<Byte>(from[random() % from.size()]);
    return bytes;
}

// Streams of every length, and words for less of them, for all, and for more.
template <typename Check>
void withStreams(std::string_view from, Check check) {
    test::withEachInstructionSet([&] {
        const unsigned seed = std::random_device{}();
        SCOPED_TRACE(seed);
        test::Random random(seed);
        for (std::size_t size = 0; size <= 400; ++size) {
            const Bytes bytes = randomBytes(random, size, from);
            for (const std::size_t words : {size / 64 / 2, size / 64, size / 64 + 2})
                ASSERT_NO_FATAL_FAILURE(check(bytes, words)) << size;
        }
        ASSERT_NO_FATAL_FAILURE(check(randomBytes(random, 50001, from), 782));
    });
}

TEST(MarkBlanks, EqualsItsSlowTwinWithEveryInstructionSetAtEveryLength) {
    withStreams("\x01\x7F\x80\xFF", [](const Bytes& bytes, std::size_t words) {
        Words marks(words + 1, 0xA5);
        markBlanks(bytes, std::span(marks).first(words));
        EXPECT_EQ(marks.back(), 0xA5U);  // nothing after them
        marks.pop_back();
        ASSERT_EQ(marks, markedOneByOne(bytes, words, isBlankAt));
    });
}

TEST(MarkPositions, EqualsItsSlowTwinWithEveryInstructionSetAtEveryLength) {
    withStreams("<<RRCC>", [](const Bytes& bytes, std::size_t words) {
        Words marks(words + 1, 0xA5);
        markPositions(bytes, std::span(marks).first(words));
        EXPECT_EQ(marks.back(), 0xA5U);
        marks.pop_back();
        ASSERT_EQ(marks, markedOneByOne(bytes, words, isPositionAt));
    });
}

TEST(MarkPositions, MissesNoneInAStreamOfNothingElse) {
    test::withEachInstructionSet([] {
        Bytes bytes;
        for (std::size_t i = 0; i < 1000; ++i) bytes.push_back(static_cast<Byte>("<RC"[i % 3]));
        Words marks(16);
        markPositions(bytes, marks);
        EXPECT_EQ(marks, markedOneByOne(bytes, 16, isPositionAt));
    });
}

}  // namespace
}  // namespace tavio::encoder
