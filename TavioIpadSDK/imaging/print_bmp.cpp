#include "TavioIpadSDK/imaging/print_bmp.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <span>
#include <utility>

#include "TavioIpadSDK/encoder/parse_bmp.h"
#include "TavioIpadSDK/imaging/bitmap_file.h"
#include "TavioIpadSDK/imaging/monochrome.h"
#include "TavioIpadSDK/imaging/state.h"
#include "TavioIpadSDK/platform/stretch.h"
#include "TavioIpadSDK/settings/settings.h"

namespace tavio::imaging {
namespace {

// Leaves the fitted picture on the drawing surface, which stays open for the next print.
void fit(const platform::Picture& image, std::int32_t width, std::int32_t height) {
    const bool isEmpty = image.pixels.empty() || !isPrintableSize(width, height);
    openSurface.width = isEmpty ? 0 : width;
    openSurface.height = isEmpty ? 0 : height;
    platform::stretch(image, openSurface.width, openSurface.height, openSurface.pixels);
}

// Header and rows, one after the other.
std::shared_ptr<const Bytes> bitmapFileImage() {
    const auto rows = std::span(mRawBitmapData).first(static_cast<std::size_t>(nRead));
    Bytes file;
    file.reserve(BMPHeader.size() + rows.size());
    file.insert(file.end(), BMPHeader.begin(), BMPHeader.end());
    file.insert(file.end(), rows.begin(), rows.end());
    return std::make_shared<const Bytes>(std::move(file));
}

void makeBitmapFile(const platform::Picture& image, std::int32_t width, std::int32_t height) {
    fit(image, width, height);
    if (ImageDithered) {
        CreateTransformedImage(openSurface);
    } else {
        ConvertToMonochrome(openSurface);
    }
    createRawMonochromeData();
    populate_bmpheader();
    myImageData = bitmapFileImage();
}

}  // namespace

bool isPrintableSize(std::int32_t width, std::int32_t height) {
    constexpr std::int64_t kMostEntries = 0x7FFFFFFF;  // mDataArrayLength is a signed 32-bit count
    return std::int64_t{width} * height <= platform::kMostPixels &&
           paddedWidth(width) * height <= kMostEntries;
}

void PrintBMP(std::int32_t width, std::int32_t height,
              const std::optional<platform::Picture>& image) noexcept {
    const platform::Picture nothing;
    try {
        makeBitmapFile(image ? *image : nothing, std::max(width, 0), std::max(height, 0));
    } catch (const std::exception&) {  // no memory: refused like a picture that is not there
        makeBitmapFile(nothing, 0, 0);
    }
    encoder::ParseBMP(*myImageData);
}

}  // namespace tavio::imaging
