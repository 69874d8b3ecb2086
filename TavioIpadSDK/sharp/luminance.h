// The grey value of a pixel.
#pragma once

#include <cstdint>
#include <span>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::sharp {

// The luminance of a premultiplied pixel (pictures/picture.h) that lies on white, rounded half up:
//
//   0.299 * red + 0.587 * green + 0.114 * blue + 255 - alpha
constexpr Byte luminance(UInt32 pixel) {
    const std::uint32_t red = pixel & 0xFF;
    const std::uint32_t green = pixel >> 8 & 0xFF;
    const std::uint32_t blue = pixel >> 16 & 0xFF;
    const std::uint32_t thousandths = 299 * red + 587 * green + 114 * blue + 500;
    // A division by 1000 whose factors fit 32 bits: 33555 / 2^22 is above 1/125 by less than what
    // any dividend of up to 255500 / 8 could show.
    const std::uint32_t colour = ((thousandths >> 3) * 33'555) >> 22;
    return static_cast<Byte>(colour + 255 - (pixel >> 24));
}

// greys[i] = luminance(pixels[i]). Both have the same size.
void toGrey(std::span<const UInt32> pixels, std::span<Byte> greys);

}  // namespace tavio::sharp
