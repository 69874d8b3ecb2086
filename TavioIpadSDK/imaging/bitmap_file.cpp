#include "TavioIpadSDK/imaging/bitmap_file.h"

#include <cstddef>
#include <span>

#include "TavioIpadSDK/imaging/bitmap_image.h"
#include "TavioIpadSDK/imaging/pack_entries.h"
#include "TavioIpadSDK/imaging/state.h"

namespace tavio::imaging {

void createRawMonochromeData() {
    packEntries(std::span(mDataArray).first(static_cast<std::size_t>(mDataArrayLength)),
                mRawBitmapData);
    nRead = mDataArrayLength / 8;
}

void BMPHeader_Int(std::int32_t intToReverse, std::int32_t index) {
    const auto at = static_cast<std::size_t>(index);  // a negative one becomes too large
    if (at > BMPHeader.size() - 4) return;
    putLowestFirst(intToReverse, std::span(BMPHeader).subspan(at).first<4>());
}

void populate_bmpheader() {
    BMPHeader = bitmapHeader(mWidth, mHeight, nRead);
}

}  // namespace tavio::imaging
