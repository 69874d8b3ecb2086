// One pixel during error diffusion.
#pragma once

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::imaging {

// The colour fields hold the source's channels rotated by one place: TransformToRGBA (dither.h)
// puts its green into Red, its blue into Green and its red into Blue.
struct ArgbColor {
    Byte Alpha = 0;
    Byte Red = 0;
    Byte Green = 0;
    Byte Blue = 0;

    bool operator==(const ArgbColor&) const = default;
};

}  // namespace tavio::imaging
