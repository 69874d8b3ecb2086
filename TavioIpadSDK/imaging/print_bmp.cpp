#include "TavioIpadSDK/imaging/print_bmp.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <span>
#include <utility>

#include "TavioIpadSDK/encoder/parse_bmp.h"
#include "TavioIpadSDK/imaging/bitmap_file.h"
#include "TavioIpadSDK/imaging/bitmap_image.h"
#include "TavioIpadSDK/imaging/fit_picture.h"
#include "TavioIpadSDK/imaging/monochrome.h"
#include "TavioIpadSDK/imaging/state.h"
#include "TavioIpadSDK/settings/settings.h"

namespace tavio::imaging {
namespace {

using pictures::Picture;
using pictures::PictureRows;

// The resampled picture, a Picture or PictureRows.
template <typename ResampledPicture>
void convert(ResampledPicture&& fitted) {
    if (ImageDithered) {
        CreateTransformedImage(fitted);
    } else {
        ConvertToMonochrome(fitted);
    }
}

// Leaves an empty picture, which cannot be printed. One of the two sizes may be above 0.
void convertEmpty(std::int32_t width, std::int32_t height) {
    const Picture empty{width, height, {}, 1};
    convert(empty);
}

void fitAndConvert(std::int32_t width, std::int32_t height, std::unique_ptr<PictureRows> image) {
    if (!image || image->width() == 0 || !isPrintableSize(width, height)) return convertEmpty(0, 0);
    if (width == 0 || height == 0) {
        pictures::readToEnd(*image);  // a damaged picture is refused at any size
        return convertEmpty(width, height);
    }
    convert(*fittedRows(std::move(image), width, height, &openSurface));
}

// A picture that has its size in dots already is converted in place.
void fitAndConvert(std::int32_t width, std::int32_t height, const std::optional<Picture>& image) {
    if (!image || !isWhole(*image)) return convertEmpty(0, 0);
    const bool fits = image->width == width && image->height == height && image->orientation == 1;
    if (fits && !image->pixels.empty() && isPrintableSize(width, height)) return convert(*image);
    fitAndConvert(width, height, pictures::rowsOf(*image));
}

void makeBitmapFile() {
    createRawMonochromeData();
    populate_bmpheader();
    const auto rows = std::span(mRawBitmapData).first(static_cast<std::size_t>(nRead));
    myImageData = std::make_shared<const Bytes>(bitmapFile(BMPHeader, rows));
}

template <typename Image>
void print(std::int32_t width, std::int32_t height, Image&& image) {
    try {
        fitAndConvert(std::max(width, 0), std::max(height, 0), std::forward<Image>(image));
        makeBitmapFile();
    } catch (const std::exception&) {  // damaged, or no memory: like an absent picture
        convertEmpty(0, 0);
        makeBitmapFile();
    }
    encoder::ParseBMP(*myImageData);
}

}  // namespace

void PrintBMP(std::int32_t width, std::int32_t height,
              const std::optional<Picture>& image) noexcept {
    print(width, height, image);
}

void PrintBMP(std::int32_t width, std::int32_t height,
              std::unique_ptr<PictureRows> image) noexcept {
    print(width, height, std::move(image));
}

}  // namespace tavio::imaging
