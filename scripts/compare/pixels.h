// Random pixels of the kinds that tickets show.
#pragma once

#include <TavioIpadSDK/TavioIpadSDK.h>
#include <cstddef>
#include <vector>

#include "random.h"

namespace compare {

using Bytes = std::vector<tavio::Byte>;

// Straight (not premultiplied) red, green, blue and alpha, row after row.
struct Pixels {
    int width = 0;
    int height = 0;
    Bytes samples;  // 4 * width * height

    const tavio::Byte* at(int x, int y) const {
        const auto index = static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
        return samples.data() + 4 * (index + static_cast<std::size_t>(x));
    }
};

// One byte for the three colours of a pixel.
inline tavio::Byte greyOf(const tavio::Byte* pixel) {
    return static_cast<tavio::Byte>((pixel[0] + pixel[1] + pixel[2]) / 3);
}

// Noise, a gradient, lines, single dots, something like text, or one colour; opaque or not.
Pixels randomPixels(Random& random, int width, int height);

// How many pixels a side of a picture has: 1 to 120 most often, up to 2500 now and then.
int randomSide(Random& random);

}  // namespace compare
