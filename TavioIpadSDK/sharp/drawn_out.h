// Dots drawn out to the right: one by one, for a word of 64.
#pragma once

#include <algorithm>
#include <cstdint>

namespace tavio::sharp {

// Each black dot of the word and the `columns` dots to the right of it. before: the word to the left,
// as it was. columns: 1 to 63.
//
// A few shifts: by 1, 2, 4 and so on, each of all dots so far. What the word before spills into this
// one is a single run at its left end, as long as the rightmost of its last `columns` dots demands:
// moved to the top of a word, s, it is all bits from the lowest 1 bit of s up, which are s | -s.
constexpr std::uint64_t drawnOut(std::uint64_t dots, std::uint64_t before, int columns) {
    int done = 0;
    for (int step = 1; done < columns; step *= 2) {
        const int shift = std::min(step, columns - done);
        dots |= dots >> shift;
        done += shift;
    }
    const std::uint64_t spilling = before << (64 - columns);
    return dots | spilling | (0 - spilling);
}

}  // namespace tavio::sharp
