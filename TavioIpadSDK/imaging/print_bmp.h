// Printing a picture: every picture becomes printer graphics here.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "TavioIpadSDK/imaging/fit_picture.h"  // isPrintableSize()
#include "TavioIpadSDK/pictures/picture.h"
#include "TavioIpadSDK/pictures/picture_rows.h"

namespace tavio::imaging {

// Resamples the picture, upright, to exactly width * height dots, makes it black and white
// (dithered or by threshold, as ImageDithered says), wraps it in a monochrome bitmap file image,
// keeps that in myImageData and hands it to the encoder, which sends it. LogoNumber, originalx and
// originaly decide whether it is printed, and where, or stored as a logo.
//
// A picture is given as a whole, or as rows, of which only a strip is in memory at any time.
// Nothing is sent before the last row has been converted: rows that turn out to be damaged print
// nothing.
//
// A negative size counts as 0. An absent, empty or damaged picture, a size that is not printable,
// or a lack of memory never prints black: it becomes an empty picture, which the encoder refuses
// with its notice. Never throws.
void PrintBMP(std::int32_t width, std::int32_t height,
              const std::optional<pictures::Picture>& image) noexcept;
void PrintBMP(std::int32_t width, std::int32_t height,
              std::unique_ptr<pictures::PictureRows> image) noexcept;

}  // namespace tavio::imaging
