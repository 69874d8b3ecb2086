#include "TavioIpadSDK/imaging/bitmap_image.h"

#include "TavioIpadSDK/machine/arithmetic.h"
#include "TavioIpadSDK/machine/large_pages.h"

namespace tavio::imaging {
namespace {

constexpr auto kHeaderSize = static_cast<std::int32_t>(BitmapHeader{}.size());

// The constant fields of the header; computed ones are 0.
constexpr BitmapHeader fixedFields() {
    BitmapHeader header{};
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

void putLowestFirst(std::int32_t value, std::span<Byte, 4> to) {
    auto bits = static_cast<UInt32>(value);
    for (Byte& byte : to) {
        byte = static_cast<Byte>(bits);
        bits >>= 8;
    }
}

BitmapHeader bitmapHeader(std::int32_t width, std::int32_t height, std::int32_t rowBytes) {
    BitmapHeader header = fixedFields();
    const std::span fields(header);
    putLowestFirst(machine::wrappingAdd(rowBytes, kHeaderSize), fields.subspan<2, 4>());
    putLowestFirst(width, fields.subspan<18, 4>());
    putLowestFirst(height, fields.subspan<22, 4>());
    putLowestFirst(rowBytes, fields.subspan<34, 4>());
    return header;
}

Bytes bitmapFile(const BitmapHeader& header, std::span<const Byte> rows) {
    Bytes file;
    machine::reserveOnLargePages(file, header.size() + rows.size());
    file.insert(file.end(), header.begin(), header.end());
    file.insert(file.end(), rows.begin(), rows.end());
    return file;
}

}  // namespace tavio::imaging
