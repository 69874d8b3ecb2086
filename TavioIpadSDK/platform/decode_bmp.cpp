#include "TavioIpadSDK/platform/decode_bmp.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "TavioIpadSDK/platform/decode_bmp_header.h"
#include "TavioIpadSDK/platform/decode_bmp_rle.h"
#include "TavioIpadSDK/platform/decode_jpeg.h"
#include "TavioIpadSDK/platform/decode_png.h"

namespace tavio::platform {
namespace {

constexpr std::uint64_t kRowAlignmentBits = 32;

// One colour out of a pixel's bits, spread over 0 to 255.
class Component {
  public:
    explicit Component(UInt32 mask)
        : mask_(mask),
          shift_(mask == 0 ? 0 : std::countr_zero(mask)),
          largest_(std::uint64_t{mask} >> shift_) {
        for (std::uint64_t value = 0; value < small_.size() && value <= largest_; ++value)
            small_[static_cast<std::size_t>(value)] = spread(value);
    }

    bool absent() const { return mask_ == 0; }

    unsigned of(UInt32 bits) const {
        const UInt32 value = (bits & mask_) >> shift_;
        return value < small_.size() ? small_[value] : spread(value);
    }

  private:
    Byte spread(std::uint64_t value) const {
        return largest_ == 0 ? Byte{0} : static_cast<Byte>((value * 255 + largest_ / 2) / largest_);
    }

    UInt32 mask_;
    int shift_;
    std::uint64_t largest_;
    std::array<Byte, 256> small_{};
};

UInt32 littleEndian(const Byte* bytes, unsigned count) {
    UInt32 value = 0;
    for (unsigned index = 0; index < count; ++index) value |= UInt32{bytes[index]} << (8 * index);
    return value;
}

bool readIndexedRow(const BmpHeader& header, const Byte* line, UInt32* row) {
    const unsigned each = header.bits;
    const unsigned mask = (1U << each) - 1;
    for (std::size_t column = 0; column < static_cast<std::size_t>(header.width); ++column) {
        const std::size_t bit = column * each;
        const unsigned index = (line[bit / 8] >> (8 - each - bit % 8)) & mask;
        if (index >= header.palette.size()) return false;
        row[column] = header.palette[index];
    }
    return true;
}

void readTrueColourRow(const BmpHeader& header, const Byte* line, UInt32* row) {
    for (std::int32_t column = 0; column < header.width; ++column, line += 3)
        row[column] = premultipliedPixel(line[2], line[1], line[0], 0xFF);
}

void readMaskedRow(const BmpHeader& header, const std::array<Component, 4>& components,
                   const Byte* line, UInt32* row) {
    const auto& [red, green, blue, alpha] = components;
    const unsigned bytes = header.bits / 8;
    for (std::int32_t column = 0; column < header.width; ++column, line += bytes) {
        const UInt32 bits = littleEndian(line, bytes);
        row[column] = premultipliedPixel(red.of(bits), green.of(bits), blue.of(bits),
                                         alpha.absent() ? 0xFF : alpha.of(bits));
    }
}

std::uint64_t rowBytes(const BmpHeader& header) {
    const std::uint64_t bits =
        std::uint64_t{header.bits} * static_cast<std::uint64_t>(header.width);
    return (bits + kRowAlignmentBits - 1) / kRowAlignmentBits * (kRowAlignmentBits / 8);
}

std::string readPlainRows(const BmpHeader& header, std::vector<UInt32>& pixels) {
    const auto line = static_cast<std::size_t>(rowBytes(header));
    const std::array<Component, 4> components = {
        Component(header.masks[0]), Component(header.masks[1]), Component(header.masks[2]),
        Component(header.masks[3])};
    const auto height = static_cast<std::size_t>(header.height);
    for (std::size_t stored = 0; stored < height; ++stored) {
        const Byte* from = header.data.data() + stored * line;
        const std::size_t row = header.topDown ? stored : height - 1 - stored;
        UInt32* to = pixels.data() + row * static_cast<std::size_t>(header.width);
        if (header.bits <= 8) {
            if (!readIndexedRow(header, from, to))
                return "the BMP file has a pixel outside of its palette";
        } else if (header.bits == 24) {
            readTrueColourRow(header, from, to);
        } else {
            readMaskedRow(header, components, from, to);
        }
    }
    return {};
}

DecodedPicture decodeEmbedded(const BmpHeader& header) {
    DecodedPicture decoded =
        header.coding == BmpCoding::kPng ? decodePng(header.data) : decodeJpeg(header.data);
    if (!decoded.picture) return decoded;
    if (decoded.picture->width != header.width || decoded.picture->height != header.height)
        return {std::nullopt, "the BMP file holds a picture of another size"};
    decoded.picture->orientation = 1;
    return decoded;
}

}  // namespace

bool looksLikeBmp(std::span<const Byte> file) {
    return file.size() >= 2 && file[0] == 'B' && file[1] == 'M';
}

DecodedPicture decodeBmp(std::span<const Byte> file) {
    const auto [header, refused] = readBmpHeader(file);
    if (!refused.empty()) return {std::nullopt, refused};
    if (header.coding == BmpCoding::kPng || header.coding == BmpCoding::kJpeg)
        return decodeEmbedded(header);

    const auto height = static_cast<std::uint64_t>(header.height);
    const bool isPlain = header.coding == BmpCoding::kPlain;
    if (isPlain && rowBytes(header) * height > header.data.size())
        return {std::nullopt, "the BMP file is cut short"};
    const std::uint64_t count = height * static_cast<std::uint64_t>(header.width);
    Picture picture{header.width, header.height, std::vector<UInt32>(count), 1};
    std::string why =
        isPlain ? readPlainRows(header, picture.pixels) : readBmpRuns(header, picture.pixels);
    if (!why.empty()) return {std::nullopt, std::move(why)};
    return {std::move(picture), {}};
}

}  // namespace tavio::platform
