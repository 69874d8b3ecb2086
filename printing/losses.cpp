#include "tavio/printing/losses.h"

#include <algorithm>
#include <cstddef>

#include "TavioIpadSDK/encoder/bitmap_headers.h"
#include "TavioIpadSDK/encoder/bitmap_reader.h"
#include "TavioIpadSDK/imaging/entries.h"

namespace tavio::printing {
namespace {

constexpr std::int32_t kBandRows = 8;

// The bits of a picture's rows, padding included: packing moves a row's last dot into it.
class Dots {
  public:
    Dots(std::span<const Byte> rows, std::int32_t width, std::int32_t height)
        : rows_(rows),
          columns_(static_cast<std::int32_t>(imaging::paddedWidth(width))),
          height_(height) {}

    // row: from the top.
    bool isBlack(std::int32_t row, std::int32_t column) const {
        const auto rowBytes = static_cast<std::size_t>(columns_ / 8);
        const auto fromBottom = static_cast<std::size_t>(height_ - 1 - row);
        const auto at = static_cast<std::size_t>(column);
        const Byte byte = rows_[fromBottom * rowBytes + at / 8];
        return (byte >> (7 - at % 8) & 1) == 0;
    }

    bool hasBlackInRow(std::int32_t row) const {
        for (std::int32_t column = 0; column < columns_; ++column)
            if (isBlack(row, column)) return true;
        return false;
    }

    bool hasBlackInColumn(std::int32_t column, std::int32_t beginRow, std::int32_t endRow) const {
        for (std::int32_t row = beginRow; row < endRow; ++row)
            if (isBlack(row, column)) return true;
        return false;
    }

  private:
    std::span<const Byte> rows_;
    std::int32_t columns_;
    std::int32_t height_;
};

// The half byte left of whole padding bytes, which fillBand (band_stream.h) blanks by one rule in the
// top row and by another in all others.
struct HalfByte {
    std::int32_t firstColumn = 0;
    bool isBlankAtTop = false;
    bool isBlankBelow = false;
};

HalfByte blankedHalfByte(std::int32_t width) {
    encoder::InfoHeader info;
    info.biWidth = static_cast<UInt32>(width);
    info.biHeight = 1;
    info.biBitCount = 1;
    const encoder::RowGeometry row = encoder::rowGeometry(info);
    return {static_cast<std::int32_t>((row.RowSize - row.BytesToIgnore) * 8 - 4),
            row.NibblesToIgnore % 2 == 1, row.BytesToIgnore != 0};
}

// Columns with black dots among the rows that would be printed but for padding.
std::int32_t columnsLost(const Dots& dots, std::int32_t width, std::int32_t beginRow,
                         std::int32_t endRow) {
    const HalfByte half = blankedHalfByte(width);
    std::int32_t lost = 0;
    for (std::int32_t column = half.firstColumn; column < half.firstColumn + 4; ++column) {
        const bool atTop = half.isBlankAtTop && beginRow == 0 && dots.isBlack(0, column);
        const bool below =
            half.isBlankBelow && dots.hasBlackInColumn(column, std::max(beginRow, 1), endRow);
        lost += atTop || below;
    }
    return lost;
}

}  // namespace

Losses lossesOf(std::span<const Byte> bitmapRows, std::int32_t width, std::int32_t height,
                bool isLogo) {
    const Dots dots(bitmapRows, width, height);
    const std::int32_t firstPrinted = isLogo ? std::min(kBandRows, height) : 0;
    const std::int32_t endPrinted = height / kBandRows * kBandRows;
    Losses losses;
    for (std::int32_t row = 0; row < firstPrinted; ++row) losses.rows += dots.hasBlackInRow(row);
    for (std::int32_t row = std::max(firstPrinted, endPrinted); row < height; ++row)
        losses.rows += dots.hasBlackInRow(row);
    losses.columns = columnsLost(dots, width, firstPrinted, endPrinted);
    return losses;
}

}  // namespace tavio::printing
