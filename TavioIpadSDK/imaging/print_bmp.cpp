#include "TavioIpadSDK/imaging/print_bmp.h"

#include <algorithm>
#include <exception>
#include <limits>
#include <memory>
#include <span>
#include <utility>

#include "TavioIpadSDK/encoder/parse_bmp.h"
#include "TavioIpadSDK/imaging/bitmap_file.h"
#include "TavioIpadSDK/imaging/entries.h"
#include "TavioIpadSDK/imaging/error_diffusion.h"
#include "TavioIpadSDK/imaging/monochrome.h"
#include "TavioIpadSDK/imaging/state.h"
#include "TavioIpadSDK/machine/large_pages.h"
#include "TavioIpadSDK/pictures/rows_ahead.h"
#include "TavioIpadSDK/settings/settings.h"
#include "TavioIpadSDK/stretch/resampled_rows.h"

namespace tavio::imaging {
namespace {

using pictures::Picture;
using pictures::PictureRows;

// Header and rows, one after the other.
std::shared_ptr<const Bytes> bitmapFileImage() {
    const auto rows = std::span(mRawBitmapData).first(static_cast<std::size_t>(nRead));
    Bytes file;
    machine::reserveOnLargePages(file, BMPHeader.size() + rows.size());
    file.insert(file.end(), BMPHeader.begin(), BMPHeader.end());
    file.insert(file.end(), rows.begin(), rows.end());
    return std::make_shared<const Bytes>(std::move(file));
}

// The resampled picture, a Picture or PictureRows.
template <typename ResampledPicture>
void convert(ResampledPicture& fitted) {
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
        while (!image->next(1).empty()) continue;  // a damaged picture is refused at any size
        return convertEmpty(width, height);
    }
    const auto fitted =
        pictures::rowsAhead(stretch::resampledRows(std::move(image), width, height, &openSurface),
                            ErrorDiffusion::bestStrip());
    convert(*fitted);
}

bool isWhole(const Picture& picture) {
    return picture.width >= 0 && picture.height >= 0 &&
           picture.pixels.size() == static_cast<std::uint64_t>(picture.width) *
                                        static_cast<std::uint64_t>(picture.height);
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
    myImageData = bitmapFileImage();
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

bool isPrintableSize(std::int32_t width, std::int32_t height) {
    constexpr std::int64_t kMaxEntries = std::numeric_limits<std::int32_t>::max();
    return std::int64_t{width} * height <= pictures::kMaxPixels &&
           paddedWidth(width) * height <= kMaxEntries;
}

void PrintBMP(std::int32_t width, std::int32_t height,
              const std::optional<Picture>& image) noexcept {
    print(width, height, image);
}

void PrintBMP(std::int32_t width, std::int32_t height,
              std::unique_ptr<PictureRows> image) noexcept {
    print(width, height, std::move(image));
}

}  // namespace tavio::imaging
