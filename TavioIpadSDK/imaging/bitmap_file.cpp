#include "TavioIpadSDK/imaging/bitmap_file.h"

#include <array>
#include <cstddef>
#include <span>

#include "TavioIpadSDK/imaging/pack_entries.h"
#include "TavioIpadSDK/imaging/state.h"
#include "TavioIpadSDK/machine/arithmetic.h"

namespace tavio::imaging {
namespace {

constexpr std::int32_t kHeaderSize = 62;
static_assert(sizeof(BMPHeader) == kHeaderSize);

// The constant fields of the header; computed ones are 0.
constexpr std::array<Byte, kHeaderSize> fixedFields() {
    std::array<Byte, kHeaderSize> header{};
    header[0] = 'B';
    header[1] = 'M';
    header[10] = kHeaderSize;
    header[14] = 40;
    header[26] = 1;
    header[28] = 1;
    header[58] = header[59] = header[60] = 255;
    return header;
}

}  // namespace

void createRawMonochromeData() {
    packEntries(std::span(mDataArray).first(static_cast<std::size_t>(mDataArrayLength)),
                mRawBitmapData);
    nRead = mDataArrayLength / 8;
}

void BMPHeader_Int(std::int32_t intToReverse, std::int32_t index) {
    const auto at = static_cast<std::size_t>(index);  // a negative one becomes too large
    if (at > kHeaderSize - 4) return;
    const auto bits = static_cast<UInt32>(intToReverse);
    for (std::size_t i = 0; i < 4; ++i) BMPHeader[at + i] = static_cast<Byte>(bits >> (8 * i));
}

void populate_bmpheader() {
    BMPHeader = fixedFields();
    BMPHeader_Int(machine::wrappingAdd(nRead, kHeaderSize), 2);
    BMPHeader_Int(mWidth, 18);
    BMPHeader_Int(mHeight, 22);
    BMPHeader_Int(nRead, 34);
}

}  // namespace tavio::imaging
