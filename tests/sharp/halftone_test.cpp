#include "TavioIpadSDK/sharp/halftone.h"

#include <gtest/gtest.h>

#include "support/memory_rows.h"

namespace tavio::sharp {
namespace {

TEST(Halftone, KeepsSolidValues) {
    for (const Method method : {Method::kDithered, Method::kThreshold}) {
        test::MemoryRows rows(3, 2, {0, 255, 0, 255, 0, 255});
        const Dots dots = halftoned(rows, {.method = method}, false);
        ASSERT_EQ(dots.bits.size(), 16U);
        EXPECT_EQ(dots.row(0)[0], 0xA0);
        EXPECT_EQ(dots.row(1)[0], 0x40);
    }
}

}  // namespace
}  // namespace tavio::sharp
