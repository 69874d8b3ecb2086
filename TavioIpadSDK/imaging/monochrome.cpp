#include "TavioIpadSDK/imaging/monochrome.h"

#include <algorithm>
#include <cstddef>

#include "TavioIpadSDK/imaging/error_diffusion.h"
#include "TavioIpadSDK/imaging/grey.h"
#include "TavioIpadSDK/imaging/threshold_rows.h"
#include "TavioIpadSDK/machine/large_pages.h"

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
    machine::reserveOnLargePages(mDataArray, asSize(mDataArrayLength));
    mDataArray.resize(asSize(mDataArrayLength));
    machine::reserveOnLargePages(mRawBitmapData, asSize(mDataArrayLength / 8));
    mRawBitmapData.resize(asSize(mDataArrayLength / 8));
}

// Converts the rows a strip at a time, the picture's top row first, which is mDataArray's last.
// Makes no more than one strip of rows in memory necessary.
template <typename Convert>
void convertRows(pictures::PictureRows& image, std::int32_t strip, Convert convert) {
    std::span<Byte> rest(mDataArray);
    while (!rest.empty()) {
        const std::span<const UInt32> pixels = image.next(strip);
        if (pixels.empty()) throw pictures::DamagedPicture("the picture has too few rows");
        const std::size_t size = pixels.size() / asSize(mWidth) * asSize(mDataWidth);
        convert(pixels, rest.last(size));
        rest = rest.first(rest.size() - size);
    }
}

// The threshold conversion leaves the top row out; it is white whatever was printed before.
void whitenTopRow() {
    const std::size_t line = mHeight > 0 ? asSize(mDataWidth) : 0;
    std::ranges::fill(std::span(mDataArray).last(line), static_cast<Byte>(WHITE));
}

}  // namespace

void MakeItMonochrome(std::span<const ArgbColor> originalData, std::int32_t width,
                      std::int32_t height) {
    const std::span<Byte> entries(mDataArray);
    k = 0;
    for (std::int32_t row = height - 1; row >= 0; --row) {
        const auto pixels = originalData.subspan(asSize(row) * asSize(width), asSize(width));
        const auto line = entries.subspan(k, asSize(mDataWidth));
        std::ranges::fill(line, static_cast<Byte>(WHITE));
        std::ranges::transform(pixels, line.begin(), [](ArgbColor record) {
            return static_cast<Byte>(isBlack(record.Red, record.Green, record.Blue) ? BLACK
                                                                                    : WHITE);
        });
        k += static_cast<UInt32>(mDataWidth);
    }
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
    constexpr std::int32_t kStrip = 32;
    sizeWorkingArrays(image.width(), image.height());
    convertRows(image, kStrip, [](std::span<const UInt32> pixels, std::span<Byte> entries) {
        thresholdRows(pixels, mWidth, entries);
    });
    whitenTopRow();
}

}  // namespace tavio::imaging
