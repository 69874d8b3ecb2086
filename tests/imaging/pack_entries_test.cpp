#include "TavioIpadSDK/imaging/pack_entries.h"

#include <cstddef>
#include <random>
#include <span>

#include <gtest/gtest.h>

#include "support/instruction_sets.h"

namespace tavio::imaging {
namespace {

// The rule literally: seven rounds of shifting left and inserting the next entry, beginning with
// the first one again.
Bytes packedLiterally(const Bytes& entries) {
    Bytes packed;
    for (std::size_t i = 0; i + 8 <= entries.size(); i += 8) {
        Byte first = entries[i];
        for (std::size_t j = 0; j <= 6; ++j)
            first = static_cast<Byte>((first << 1) | entries[i + j]);
        packed.push_back(first);
    }
    return packed;
}

TEST(PackEntries, EqualsItsLiteralTwinWithEveryInstructionSetAtEveryLength) {
    test::withEachInstructionSet([] {
        const unsigned seed = std::random_device{}();
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        for (std::size_t length = 0; length <= 1100; ++length) {
            Bytes entries(length);
            for (Byte& entry : entries) entry = static_cast<Byte>(random() & 1);
            Bytes packed(length / 8);
            packEntries(entries, packed);
            ASSERT_EQ(packed, packedLiterally(entries)) << length;
        }
    });
}

TEST(PackEntries, EqualsItsLiteralTwinOnLongRowsFromAnyAddress) {
    test::withEachInstructionSet([] {
        const unsigned seed = std::random_device{}();
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        for (int i = 0; i < 20; ++i) {
            const std::size_t skipped = random() % 64;
            const std::size_t length = 14000 + random() % 40000;
            Bytes entries(skipped + length);
            for (Byte& entry : entries) entry = static_cast<Byte>(random() & 1);
            const Bytes used(entries.begin() + static_cast<std::ptrdiff_t>(skipped), entries.end());
            Bytes packed(length / 8);
            packEntries(std::span<const Byte>(entries).subspan(skipped), packed);
            ASSERT_EQ(packed, packedLiterally(used)) << skipped << ", " << length;
        }
    });
}

TEST(PackEntries, PacksEveryGroupOfEightInEveryPlace) {
    // Group i counts up from i, so that each of the 256 groups passes each place of a vector.
    test::withEachInstructionSet([] {
        for (unsigned first = 0; first < 256; ++first) {
            Bytes entries;
            for (unsigned i = 0; i < 16; ++i) {
                const unsigned group = (first + i) % 256;
                for (unsigned bit = 8; bit > 0; --bit)
                    entries.push_back(static_cast<Byte>((group >> (bit - 1)) & 1));
            }
            Bytes packed(16);
            packEntries(entries, packed);
            for (unsigned i = 0; i < 16; ++i) {
                const unsigned group = (first + i) % 256;
                ASSERT_EQ(packed[i], (group & 0x80) | group >> 1) << group;
            }
        }
    });
}

TEST(PackEntries, WritesNothingBehindThePackedBytes) {
    test::withEachInstructionSet([] {
        for (const std::size_t length : {0U, 7U, 8U, 100U, 1000U, 20000U, 20007U}) {
            const Bytes entries(length, 1);
            Bytes packed(length / 8 + 64, 0xA5);
            packEntries(entries, packed);
            for (std::size_t i = length / 8; i < packed.size(); ++i)
                ASSERT_EQ(packed[i], 0xA5) << length << ", " << i;
        }
    });
}

}  // namespace
}  // namespace tavio::imaging
