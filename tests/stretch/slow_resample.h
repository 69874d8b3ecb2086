// Stretching once more, slowly and from the definition of its weights.
#pragma once

#include <cstdint>
#include <vector>

#include "TavioIpadSDK/pictures/picture.h"

namespace tavio::stretch {

using pictures::Picture;

// A source pixel and how much it weighs in a target pixel, more than 0.
struct Weight {
    std::int64_t from = 0;
    std::int64_t weight = 0;
};

// The weights of target pixel `to`, from the first source pixel on; their sum is totalWeight.
std::vector<Weight> weightsOf(std::int64_t sources, std::int64_t to, std::int64_t targets);
std::int64_t totalWeight(std::int64_t sources, std::int64_t targets);

// The weighted sum `sum` of a channel's values, 0 to 255, of a row, divided by `total`: with 16
// fraction bits, rounded half up.
std::int64_t passedValue(std::int64_t sum, std::int64_t total);

// `picture`, upright and stretched.
Picture slowStretch(const Picture& picture, std::int32_t width, std::int32_t height);

// The same by resampledRows(), asked for a few rows at a time.
Picture stretched(const Picture& picture, std::int32_t width, std::int32_t height);

}  // namespace tavio::stretch
