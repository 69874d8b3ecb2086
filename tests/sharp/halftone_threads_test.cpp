#include <random>

#include <gtest/gtest.h>

#include "TavioIpadSDK/sharp/halftone.h"
#include "support/instruction_sets.h"
#include "support/memory_rows.h"
#include "support/random_picture.h"

namespace tavio::sharp {
namespace {

// Large enough for a thread: wide, high and narrow, and with a last strip of one row.
TEST(HalftoneThreads, GiveTheSameDots) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(seed);
    test::Random random(seed);
    const int widths[] = {5100, 1100, 3};
    const int heights[] = {260, 1025, 400000};
    for (std::size_t i = 0; i < std::size(widths); ++i) {
        Bytes greys(static_cast<std::size_t>(widths[i]) * static_cast<std::size_t>(heights[i]));
        for (Byte& grey : greys) grey = static_cast<Byte>(random());
        test::withEachInstructionSet([&] {
            test::MemoryRows first(widths[i], heights[i], greys);
            test::MemoryRows second(widths[i], heights[i], greys, 7);
            ASSERT_EQ(halftoned(first, {}, false).bits, halftoned(second, {}, true).bits);
        });
    }
}

}  // namespace
}  // namespace tavio::sharp
