// The grey value of a colour, and the threshold of black.
#pragma once

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::imaging {

inline constexpr int DITHERTHRESHOLD = 128;  // a grey value below it is black

// grey = 0.299 * first + 0.587 * second + 0.114 * third
//
// In double, added left to right, each operation rounded on its own (so this project compiles
// without fused multiply-add), then truncated. Arguments and result 0 to 255.
//
//   (128, 128, 128) gives 127: the sum comes out just below 128     black
//   (129, 129, 129) gives 129                                       white
//
// first, second and third are red, green and blue of the source for the threshold, and green, blue
// and red of the source for the dither, which works on rotated channels (dither.h): pure blue gives
// 29 by threshold, black, and 149 dithered, white.
constexpr Byte greyValue(Byte first, Byte second, Byte third) {
    return static_cast<Byte>(0.299 * first + 0.587 * second + 0.114 * third);
}

// greyValue(...) < DITHERTHRESHOLD, without floating point except for a sum of exactly 128: only
// there the rounding decides.
constexpr bool isBlack(Byte first, Byte second, Byte third) {
    const int thousandths = 299 * first + 587 * second + 114 * third;
    constexpr int kThreshold = DITHERTHRESHOLD * 1000;
    if (thousandths != kThreshold) return thousandths < kThreshold;
    return greyValue(first, second, third) < DITHERTHRESHOLD;
}

}  // namespace tavio::imaging
