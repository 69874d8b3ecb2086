// Random pictures of the kinds that tickets show, from a printed seed.
#pragma once

#include <cstdint>
#include <random>

#include "TavioIpadSDK/pictures/picture.h"

namespace tavio::test {

using Random = std::mt19937_64;

// A number from `min` to `max`, both included.
inline int between(Random& random, int min, int max) {
    return min + static_cast<int>(random() % static_cast<std::uint64_t>(max - min + 1));
}

inline bool chance(Random& random, int percent) {
    return between(random, 1, 100) <= percent;
}

// A picture of 1 to `maxSide` pixels a side: noise, gradient, lines, sparse or text-like; most are
// opaque, some partly transparent.
pictures::Picture randomPicture(Random& random, int maxSide);

}  // namespace tavio::test
