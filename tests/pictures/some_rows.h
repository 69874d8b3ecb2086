// Asking a picture for its next rows in either way.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <span>
#include <vector>

#include <gtest/gtest.h>

#include "TavioIpadSDK/pictures/picture_rows.h"

namespace tavio::pictures {

// At most `maxRows` rows by next() or by nextInto(), as chance has it. Checks that nothing is written
// past the rows. The result stays valid until the next call.
inline std::vector<UInt32> someRows(PictureRows& rows, std::int32_t maxRows, std::mt19937& random) {
    if (random() % 2 == 0) {
        const std::span<const UInt32> next = rows.next(maxRows);
        return {next.begin(), next.end()};
    }
    constexpr UInt32 kUntouched = 0x5A5A5A5A;
    constexpr std::size_t kGuard = 16;
    const std::size_t room =
        static_cast<std::size_t>(maxRows) * static_cast<std::size_t>(rows.width());
    std::vector<UInt32> pixels(room + kGuard, kUntouched);
    const std::size_t used = rows.nextInto(std::span(pixels).first(room));
    EXPECT_LE(used, room);
    for (std::size_t i = used; i < pixels.size(); ++i) {
        EXPECT_EQ(pixels[i], kUntouched) << "written past the rows";
        if (pixels[i] != kUntouched) break;
    }
    pixels.resize(used);
    return pixels;
}

}  // namespace tavio::pictures
