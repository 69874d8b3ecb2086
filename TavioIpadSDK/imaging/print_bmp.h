// The one road by which a picture becomes printer graphics.
#pragma once

#include <cstdint>
#include <optional>

#include "TavioIpadSDK/platform/picture.h"

namespace tavio::imaging {

// Stretches the picture, upright, to exactly width * height dots, makes it black and white
// (dithered or by threshold, as ImageDithered says), wraps it in a monochrome bitmap file image,
// keeps that in myImageData and hands it to the encoder, which sends it. LogoNumber, originalx and
// originaly say whether it is printed, and where, or stored as a logo.
//
// A negative size counts as 0. An absent or empty picture, a size of more than 2^28 dots (or of
// more than 2^31 - 1 entries once the rows are padded to 32), or a lack of memory never prints
// black: it becomes an empty picture, which the encoder refuses with its notice. Never throws.
void PrintBMP(std::int32_t width, std::int32_t height,
              const std::optional<platform::Picture>& image) noexcept;

}  // namespace tavio::imaging
