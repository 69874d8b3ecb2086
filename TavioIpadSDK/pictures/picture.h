// A picture in memory, as decoded from a file or drawn on a canvas.
#pragma once

#include <cstdint>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/machine/export.h"

namespace tavio::pictures {

// Larger pictures are refused before memory is taken for them (1 GiB at 4 bytes a pixel).
inline constexpr std::int64_t kMaxPixels = std::int64_t{1} << 28;

// Stored pixels and their orientation.
//
//   pixels[row * width + column], row 0 at the top, column 0 at the left; pixels.size() is always
//   width * height. One pixel is one word: bits 0 to 7 red, 8 to 15 green, 16 to 23 blue, 24 to 31
//   alpha, the colours premultiplied by alpha (no colour is larger than alpha).
struct TAVIO_API Picture {
    std::int32_t width = 0;      // of the stored pixels, 0 or more
    std::int32_t height = 0;     // of the stored pixels, 0 or more
    std::vector<UInt32> pixels;  // width * height words
    int orientation = 1;         // EXIF orientation, 1 to 8; 1 is upright as stored
};

// True if the picture has as many pixels as its size says. Pictures of applications may not.
inline bool isWhole(const Picture& picture) {
    return picture.width >= 0 && picture.height >= 0 &&
           picture.pixels.size() == static_cast<std::uint64_t>(picture.width) *
                                        static_cast<std::uint64_t>(picture.height);
}

// One premultiplied pixel from straight (not premultiplied) components, each 0 to 255; a colour
// becomes round(colour * alpha / 255).
constexpr UInt32 premultipliedPixel(unsigned red, unsigned green, unsigned blue, unsigned alpha) {
    auto scaled = [alpha](unsigned colour) { return (colour * alpha + 127) / 255; };
    return scaled(red) | (scaled(green) << 8) | (scaled(blue) << 16) | (alpha << 24);
}

}  // namespace tavio::pictures
