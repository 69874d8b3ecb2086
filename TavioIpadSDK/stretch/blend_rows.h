// The kernel that blends two passed rows into a target row.
#pragma once

#include <cstdint>
#include <span>

#include "TavioIpadSDK/stretch/passed_row.h"

namespace tavio::stretch {

// target[i] = in each channel (upper * (total - beyond) + lower * beyond) / total, rounded half up.
// `total` is 1 to 2^29 and even; both rows have as many columns as `target`.
void blendRows(const PassedRow& upper, const PassedRow& lower, std::uint64_t beyond,
               std::uint64_t total, std::span<UInt32> target);

}  // namespace tavio::stretch
