#include "TavioIpadSDK/imaging/monochrome.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <limits>

#include "TavioIpadSDK/imaging/diffuse_picture.h"
#include "TavioIpadSDK/imaging/dither.h"
#include "TavioIpadSDK/imaging/entries.h"
#include "TavioIpadSDK/imaging/error_diffusion.h"
#include "TavioIpadSDK/imaging/state.h"
#include "TavioIpadSDK/imaging/threshold_rows.h"
#include "TavioIpadSDK/machine/large_pages.h"

namespace tavio::imaging {
namespace {

std::size_t asSize(std::int64_t count) {
    return static_cast<std::size_t>(count);
}

void sizeWorkingArrays(std::int32_t width, std::int32_t height) {
    assert(width >= 0 && height >= 0);
    assert(paddedWidth(width) * height <= std::numeric_limits<std::int32_t>::max());
    mWidth = width;
    mHeight = height;
    mDataWidth = static_cast<std::int32_t>(paddedWidth(width));
    mDataArrayLength = mDataWidth * mHeight;
    machine::reserveOnLargePages(mDataArray, asSize(mDataArrayLength));
    mDataArray.resize(asSize(mDataArrayLength));
    machine::reserveOnLargePages(mRawBitmapData, asSize(mDataArrayLength / 8));
    mRawBitmapData.resize(asSize(mDataArrayLength / 8));
}

// Converts the rows a strip at a time, the picture's top row first, which is mDataArray's last.
// Needs no more than one strip of rows in memory.
template <typename Convert>
void convertRows(pictures::PictureRows& image, std::int32_t stripRows, Convert convert) {
    std::span<Byte> rest(mDataArray);
    while (!rest.empty()) {
        const std::span<const UInt32> pixels = image.next(stripRows);
        if (pixels.empty()) throw pictures::DamagedPicture("the picture has too few rows");
        assert(pixels.size() % asSize(mWidth) == 0);
        const std::size_t size = pixels.size() / asSize(mWidth) * asSize(mDataWidth);
        assert(size <= rest.size());
        convert(pixels, rest.last(size));
        rest = rest.first(rest.size() - size);
    }
}

// The threshold conversion leaves the top row out: it converts rows height - 1 down to 1, and row
// 0, the last of the entries, is always white. A 4 x 3 picture has 96 entries, of which the last 32
// are white.
void whitenTopRow() {
    const std::size_t line = mHeight > 0 ? asSize(mDataWidth) : 0;
    std::ranges::fill(std::span(mDataArray).last(line), static_cast<Byte>(WHITE));
}

}  // namespace

void MakeItMonochrome(std::span<const ArgbColor> originalData, std::int32_t width,
                      [[maybe_unused]] std::int32_t height) {
    assert(width == mWidth && height == mHeight);
    assert(originalData.size() == asSize(width) * asSize(height));
    k = 0;
    if (!originalData.empty()) makeEntries(originalData, width, mDataArray);
    k = static_cast<UInt32>(mDataArrayLength);
}

void CreateTransformedImage(const pictures::Picture& image) {
    sizeWorkingArrays(image.width, image.height);
    if (!image.pixels.empty()) diffusePicture(image.pixels, mWidth, mHeight, mDataArray);
    k = static_cast<UInt32>(mDataArrayLength);
}

void CreateTransformedImage(pictures::PictureRows& image) {
    sizeWorkingArrays(image.width(), image.height());
    ErrorDiffusion diffusion(mWidth);
    convertRows(image, ErrorDiffusion::bestStrip(),
                [&](std::span<const UInt32> pixels, std::span<Byte> entries) {
                    diffusion.convert(pixels, entries);
                });
    k = static_cast<UInt32>(mDataArrayLength);
}

void ConvertToMonochrome(const pictures::Picture& image) {
    sizeWorkingArrays(image.width, image.height);
    thresholdRows(image.pixels, mWidth, mDataArray);
    whitenTopRow();
}

void ConvertToMonochrome(pictures::PictureRows& image) {
    constexpr std::int32_t kStripRows = 32;
    sizeWorkingArrays(image.width(), image.height());
    convertRows(image, kStripRows, [](std::span<const UInt32> pixels, std::span<Byte> entries) {
        thresholdRows(pixels, mWidth, entries);
    });
    whitenTopRow();
}

}  // namespace tavio::imaging
