#include "TavioIpadSDK/imaging/monochrome.h"

#include <algorithm>
#include <cstddef>

#include "TavioIpadSDK/imaging/dither.h"
#include "TavioIpadSDK/imaging/grey.h"

namespace tavio::imaging {
namespace {

std::size_t asSize(std::int64_t count) {
    return static_cast<std::size_t>(count);
}

void sizeWorkingArrays(std::int32_t width, std::int32_t height) {
    mWidth = width;
    mHeight = height;
    mDataWidth = static_cast<std::int32_t>(paddedWidth(width));
    mDataArrayLength = mDataWidth * mHeight;
    mDataArray.resize(asSize(mDataArrayLength));
    mRawBitmapData.resize(asSize(mDataArrayLength / 8));
}

// Writes one row of entries, entry i from pixel i by `blackAt`, and fills it up with WHITE.
template <typename Pixel, typename BlackAt>
void writeRow(std::span<const Pixel> pixels, std::span<Byte> entries, BlackAt blackAt) {
    for (std::size_t i = 0; i < pixels.size(); ++i)
        entries[i] = static_cast<Byte>(blackAt(pixels[i]) ? BLACK : WHITE);
    std::fill(entries.begin() + static_cast<std::ptrdiff_t>(pixels.size()), entries.end(),
              static_cast<Byte>(WHITE));
}

bool recordIsBlack(ArgbColor record) {
    return isBlack(record.Red, record.Green, record.Blue);
}

bool wordIsBlack(UInt32 word) {
    return isBlack(static_cast<Byte>(word), static_cast<Byte>(word >> 8),
                   static_cast<Byte>(word >> 16));
}

}  // namespace

void MakeItMonochrome(std::span<const ArgbColor> originalData, std::int32_t width,
                      std::int32_t height) {
    const std::span<Byte> entries(mDataArray);
    k = 0;
    for (std::int32_t row = height - 1; row >= 0; --row) {
        const auto pixels = originalData.subspan(asSize(row) * asSize(width), asSize(width));
        writeRow(pixels, entries.subspan(k, asSize(mDataWidth)), recordIsBlack);
        k += static_cast<UInt32>(mDataWidth);
    }
}

void CreateTransformedImage(const platform::Picture& image) {
    originalPixels.resize(image.pixels.size());
    TransformToRGBA(image.pixels, originalPixels, image.width, image.height);
    diffuse(originalPixels, image.width, image.height);
    sizeWorkingArrays(image.width, image.height);
    MakeItMonochrome(originalPixels, image.width, image.height);
}

void ConvertToMonochrome(const platform::Picture& image) {
    sizeWorkingArrays(image.width, image.height);
    const std::span<const UInt32> words(image.pixels);
    std::span<Byte> entries(mDataArray);
    for (std::int32_t row = mHeight - 1; row > 0; --row) {
        const auto pixels = words.subspan(asSize(row) * asSize(mWidth), asSize(mWidth));
        writeRow(pixels, entries.first(asSize(mDataWidth)), wordIsBlack);
        entries = entries.subspan(asSize(mDataWidth));
    }
    std::fill(entries.begin(), entries.end(), static_cast<Byte>(WHITE));  // the top row
}

}  // namespace tavio::imaging
