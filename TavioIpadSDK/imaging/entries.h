// Entries: the dots of a picture before they are packed into bits, one entry each.
#pragma once

#include <cstdint>

namespace tavio::imaging {

inline constexpr int BLACK = 0;
inline constexpr int WHITE = 1;

// The entries of one row: `width` (dots, 0 or more) rounded up to a multiple of 32, which makes a
// row of bits a multiple of 4 bytes. The entries past `width` are WHITE.
//
//   ((width + 31) / 32) * 4 * 8        33 gives 64, 32 gives 32, 0 gives 0
constexpr std::int64_t paddedWidth(std::int32_t width) {
    return (std::int64_t{width} + 31) / 32 * 4 * 8;
}
static_assert(paddedWidth(33) == 64 && paddedWidth(32) == 32 && paddedWidth(0) == 0);

}  // namespace tavio::imaging
