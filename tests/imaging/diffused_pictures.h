// Pictures that try error diffusion, and the operations of dither.h on a whole picture.
#pragma once

#include <cstdint>
#include <vector>

#include "TavioIpadSDK/imaging/dither.h"
#include "TavioIpadSDK/pictures/picture.h"
#include "support/random_picture.h"

namespace tavio::test {

// Kinds 0 to kKinds - 1: noise, greys near the threshold, colours of which most tie at the
// threshold, pure colours, a gradient with noise, one colour.
inline constexpr int kKinds = 6;

inline UInt32 pixelOfKind(Random& random, int kind, int column, UInt32 flat) {
    const auto noise = static_cast<UInt32>(random());
    const UInt32 grey = static_cast<UInt32>(between(random, 126, 130)) * 0x010101U;
    // 299 green + 587 blue + 114 red is exactly 128000: only rounding decides. The first three are
    // black.
    constexpr UInt32 kTies[] = {0x808080, 0xC80848, 0xC0222D, 0xBD0193, 0xCA1E04};
    switch (kind) {
        case 0:
            return noise;
        case 1:
            return 0xFF000000U | grey;
        case 2:
            return kTies[noise % 5];
        case 3:
            return (noise & 1 ? 0xFFU : 0) | (noise & 2 ? 0xFF00U : 0) |
                   (noise & 4 ? 0xFF0000U : 0);
        case 4:
            return static_cast<UInt32>(column) % 256 * 0x010101U ^ (noise & 0x070707U);
        default:
            return flat;
    }
}

inline pictures::Picture pictureOfKind(Random& random, int kind, int width, int height) {
    pictures::Picture picture{width, height, {}, 1};
    const auto flat = static_cast<UInt32>(random());
    for (int row = 0; row < height; ++row)
        for (int column = 0; column < width; ++column)
            picture.pixels.push_back(pixelOfKind(random, kind, column, flat));
    return picture;
}

// The picture's records, turned black or white pixel by pixel in raster order.
inline std::vector<imaging::ArgbColor> diffusedRecords(const pictures::Picture& picture) {
    std::vector<imaging::ArgbColor> records(picture.pixels.size());
    imaging::TransformToRGBA(picture.pixels, records, picture.width, picture.height);
    std::size_t index = 0;
    for (std::int32_t y = 0; y < picture.height; ++y) {
        for (std::int32_t x = 0; x < picture.width; ++x, ++index) {
            const imaging::ArgbColor current = records[index];
            records[index] = imaging::TransformPixel(current);
            imaging::DitherFloydSteinberg(records, current, records[index], x, y, picture.width,
                                          picture.height);
        }
    }
    return records;
}

}  // namespace tavio::test
