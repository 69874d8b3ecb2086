#include "TavioIpadSDK/imaging/monochrome.h"

#include <cassert>
#include <cstddef>
#include <limits>

#include "TavioIpadSDK/imaging/convert_picture.h"
#include "TavioIpadSDK/imaging/dither.h"
#include "TavioIpadSDK/imaging/entries.h"
#include "TavioIpadSDK/imaging/state.h"
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
    machine::resizeOnLargePages(mDataArray, asSize(mDataArrayLength));
    machine::resizeOnLargePages(mRawBitmapData, asSize(mDataArrayLength / 8));
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
    convertPicture(image, Conversion::kDithered, mDataArray);
    k = static_cast<UInt32>(mDataArrayLength);
}

void CreateTransformedImage(pictures::PictureRows& image) {
    sizeWorkingArrays(image.width(), image.height());
    convertRows(image, Conversion::kDithered, mDataArray);
    k = static_cast<UInt32>(mDataArrayLength);
}

void ConvertToMonochrome(const pictures::Picture& image) {
    sizeWorkingArrays(image.width, image.height);
    convertPicture(image, Conversion::kThreshold, mDataArray);
}

void ConvertToMonochrome(pictures::PictureRows& image) {
    sizeWorkingArrays(image.width(), image.height());
    convertRows(image, Conversion::kThreshold, mDataArray);
}

}  // namespace tavio::imaging
