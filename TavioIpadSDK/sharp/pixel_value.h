// The value of a drawing's pixel: its luminance, or 0 or 255 if the eye cannot tell it from black or
// white.
#pragma once

#include <cstdint>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/sharp/luminance.h"

namespace tavio::sharp {

inline constexpr std::uint32_t kColour = 0xFFFFFF;  // the part of a pixel that is its colour
inline constexpr std::uint32_t kBlackInk =
    0x231F20;                             // how the engine shows black ink without others
inline constexpr Byte kLastBlack = 3;     // luminances that the eye takes for black
inline constexpr Byte kFirstWhite = 252;  // and for white

constexpr Byte pixelValue(std::uint32_t pixel) {
    if ((pixel & kColour) == kBlackInk) return 0;
    const std::uint32_t luminance = luminanceOf(pixel >> 16 & 255, pixel >> 8 & 255, pixel & 255);
    if (luminance <= kLastBlack) return 0;
    return static_cast<Byte>(luminance >= kFirstWhite ? 255 : luminance);
}

}  // namespace tavio::sharp
