// Error diffusion of a picture that is in memory as a whole.
#pragma once

#include <cstdint>
#include <span>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::imaging {

// The entries of a whole picture, width * height words, bottom row first as in mDataArray:
// `entries` holds height * paddedWidth(width). Large pictures use two cores, if a thread can be
// started. Throws std::bad_alloc.
void diffusePicture(std::span<const UInt32> pixels, std::int32_t width, std::int32_t height,
                    std::span<Byte> entries);

}  // namespace tavio::imaging
