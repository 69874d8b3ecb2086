// The kernel that turns grey values into dots by a threshold.
#pragma once

#include <span>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::sharp {

// A row of Dots: bit i is black if greys[i] <= lastBlack. `bits`: the row's bytes, all overwritten.
void thresholdDots(std::span<const Byte> greys, Byte lastBlack, std::span<Byte> bits);

}  // namespace tavio::sharp
