#include "TavioIpadSDK/encoder/bitmap_reader.h"

namespace tavio::encoder {
namespace {

using Header = std::span<const Byte, kHeaderSize>;

std::uint16_t read16(Header file, std::size_t at) {
    return static_cast<std::uint16_t>(file[at] | (file[at + 1] << 8));
}

UInt32 read32(Header file, std::size_t at) {
    return read16(file, at) | (static_cast<UInt32>(read16(file, at + 2)) << 16);
}

bool hasGoodDimensions(const InfoHeader& info) {
    return info.biWidth != 0 && info.biWidth <= IMAGE_MAX_WIDTH &&  //
           info.biHeight != 0 && info.biHeight <= IMAGE_MAX_HEIGHT && info.biBitCount == 1;
}

}  // namespace

FileHeader readFileHeader(Header file) {
    return {static_cast<char>(file[0]),
            static_cast<char>(file[1]),
            read32(file, 2),
            read16(file, 6),
            read16(file, 8),
            read32(file, 10)};
}

InfoHeader readInfoHeader(Header file) {
    return {read32(file, 14), read32(file, 18), read32(file, 22), read16(file, 26),
            read16(file, 28), read32(file, 30), read32(file, 34), read32(file, 38),
            read32(file, 42), read32(file, 46), read32(file, 50), read32(file, 54),
            read32(file, 58)};
}

Verdict judge(InfoHeader& info, std::size_t fileSize) {
    if (!hasGoodDimensions(info)) return Verdict::kBadDimensions;
    if (info.biClrUsed < 2) info.biClrUsed = 2;
    if (info.biClrUsed != 2) return Verdict::kNotMonochrome;
    if (info.biXPPMeter == 0 || info.biYPPMeter == 0) info.biXPPMeter = info.biYPPMeter = 128;

    const std::uint64_t rows = std::uint64_t{rowGeometry(info).RowSize} * info.biHeight;
    return fileSize < kHeaderSize + rows ? Verdict::kIncomplete : Verdict::kAccepted;
}

RowGeometry rowGeometry(const InfoHeader& info) {
    RowGeometry row{};
    row.DataSize = info.biWidth * info.biBitCount / 32.0 * 4.0;
    row.RowSize = ((info.biBitCount * info.biWidth + 31) >> 3) & ~UInt32{3};
    row.PixelArraySize = info.biWidth * info.biHeight;
    row.NibblesToIgnore = static_cast<UInt32>((row.RowSize - row.DataSize) / 0.5);
    row.BytesToIgnore = row.NibblesToIgnore >> 1;
    return row;
}

}  // namespace tavio::encoder
