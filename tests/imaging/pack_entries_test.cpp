#include "TavioIpadSDK/imaging/pack_entries.h"

#include <cstddef>
#include <random>

#include <gtest/gtest.h>

#include "support/instruction_sets.h"

namespace tavio::imaging {
namespace {

// To the letter: seven rounds of shifting left and putting in the next entry, beginning with the
// first once more.
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

TEST(PackEntries, WritesNothingBehindThePackedBytes) {
    test::withEachInstructionSet([] {
        const Bytes entries(1000, 1);
        Bytes packed(1000 / 8 + 64, 0xA5);
        packEntries(entries, packed);
        for (std::size_t i = 1000 / 8; i < packed.size(); ++i) ASSERT_EQ(packed[i], 0xA5) << i;
    });
}

}  // namespace
}  // namespace tavio::imaging
