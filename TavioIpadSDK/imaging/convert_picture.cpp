#include "TavioIpadSDK/imaging/convert_picture.h"

#include <algorithm>
#include <cassert>
#include <cstddef>

#include "TavioIpadSDK/imaging/diffuse_picture.h"
#include "TavioIpadSDK/imaging/entries.h"
#include "TavioIpadSDK/imaging/error_diffusion.h"
#include "TavioIpadSDK/imaging/threshold_rows.h"

namespace tavio::imaging {
namespace {

constexpr std::int32_t kThresholdStripRows = 32;

// Converts the rows a strip at a time, the picture's top row first, which is the last of `entries`.
template <typename Convert>
void convertStrips(pictures::PictureRows& image, std::int32_t stripRows, std::span<Byte> entries,
                   Convert convert) {
    const auto width = static_cast<std::size_t>(image.width());
    const auto padded = static_cast<std::size_t>(paddedWidth(image.width()));
    while (!entries.empty()) {
        const std::span<const UInt32> pixels = image.next(stripRows);
        if (pixels.empty()) throw pictures::DamagedPicture("the picture has too few rows");
        assert(pixels.size() % width == 0);
        const std::size_t size = pixels.size() / width * padded;
        assert(size <= entries.size());
        convert(pixels, entries.last(size));
        entries = entries.first(entries.size() - size);
    }
}

// The threshold conversion leaves the top row out: it converts rows height - 1 down to 1, and row
// 0, the last of the entries, is always white. A 4 x 3 picture has 96 entries, of which the last 32
// are white.
void whitenTopRow(std::int32_t width, std::span<Byte> entries) {
    const auto padded = static_cast<std::size_t>(paddedWidth(width));
    std::ranges::fill(entries.last(std::min(padded, entries.size())), static_cast<Byte>(WHITE));
}

void diffuseRows(pictures::PictureRows& image, std::span<Byte> entries) {
    ErrorDiffusion diffusion(image.width());
    convertStrips(image, ErrorDiffusion::bestStrip(), entries,
                  [&](std::span<const UInt32> pixels, std::span<Byte> strip) {
                      diffusion.convert(pixels, strip);
                  });
}

}  // namespace

void convertPicture(const pictures::Picture& image, Conversion conversion,
                    std::span<Byte> entries) {
    if (conversion == Conversion::kDithered) {
        if (!image.pixels.empty()) diffusePicture(image.pixels, image.width, image.height, entries);
        return;
    }
    thresholdRows(image.pixels, image.width, entries);
    whitenTopRow(image.width, entries);
}

void convertRows(pictures::PictureRows& image, Conversion conversion, std::span<Byte> entries) {
    if (conversion == Conversion::kDithered) return diffuseRows(image, entries);
    const std::int32_t width = image.width();
    convertStrips(image, kThresholdStripRows, entries,
                  [width](std::span<const UInt32> pixels, std::span<Byte> strip) {
                      thresholdRows(pixels, width, strip);
                  });
    whitenTopRow(width, entries);
}

}  // namespace tavio::imaging
