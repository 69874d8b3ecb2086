// The grey value of a pixel.
#pragma once

#include <cstdint>
#include <span>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::sharp {

// 0.299 * red + 0.587 * green + 0.114 * blue, rounded half up. Each is 0 to 255.
constexpr std::uint32_t luminanceOf(std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
    const std::uint32_t thousandths = 299 * red + 587 * green + 114 * blue + 500;
    // A division by 1000 whose factors fit 32 bits: 33555 / 2^22 is above 1/125 by less than what
    // any dividend of up to 255500 / 8 could show.
    return ((thousandths >> 3) * 33'555) >> 22;
}

// The luminance of a premultiplied pixel (pictures/picture.h) that lies on white: that of its colours,
// and 255 - alpha.
constexpr Byte luminance(UInt32 pixel) {
    const std::uint32_t colour = luminanceOf(pixel & 0xFF, pixel >> 8 & 0xFF, pixel >> 16 & 0xFF);
    return static_cast<Byte>(colour + 255 - (pixel >> 24));
}

// greys[i] = luminance(pixels[i]). Both have the same size.
void toGrey(std::span<const UInt32> pixels, std::span<Byte> greys);

}  // namespace tavio::sharp
