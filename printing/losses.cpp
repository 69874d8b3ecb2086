#include "tavio/printing/losses.h"

#include <algorithm>
#include <cstddef>

#include "TavioIpadSDK/encoder/bitmap_headers.h"
#include "TavioIpadSDK/encoder/bitmap_reader.h"
#include "TavioIpadSDK/imaging/entries.h"

namespace tavio::printing {
namespace {

constexpr std::int32_t kBandRows = 8;

// The bits of a picture, asked for dot by dot.
class Dots {
  public:
    Dots(std::span<const Byte> rows, std::int32_t width, std::int32_t height)
        : rows_(rows),
          rowBytes_(static_cast<std::size_t>(imaging::paddedWidth(width) / 8)),
          width_(width),
          height_(height) {}

    // row: from the top.
    bool isBlack(std::int32_t row, std::int32_t column) const {
        const auto fromBottom = static_cast<std::size_t>(height_ - 1 - row);
        const auto at = static_cast<std::size_t>(column);
        const Byte byte = rows_[fromBottom * rowBytes_ + at / 8];
        return (byte >> (7 - at % 8) & 1) == 0;
    }

    bool hasBlackInRow(std::int32_t row) const {
        for (std::int32_t column = 0; column < width_; ++column)
            if (isBlack(row, column)) return true;
        return false;
    }

    // The top row keeps its dots, and rows from `end` on are not printed.
    bool hasBlackInColumn(std::int32_t column, std::int32_t end) const {
        for (std::int32_t row = 1; row < end; ++row)
            if (isBlack(row, column)) return true;
        return false;
    }

  private:
    std::span<const Byte> rows_;
    std::size_t rowBytes_;
    std::int32_t width_;
    std::int32_t height_;
};

// The first of the columns that padding blanks: those of the half byte left of whole padding bytes.
std::int32_t firstBlankedColumn(std::int32_t width) {
    encoder::InfoHeader info;
    info.biWidth = static_cast<UInt32>(width);
    info.biHeight = 1;
    info.biBitCount = 1;
    const encoder::RowGeometry row = encoder::rowGeometry(info);
    if (row.BytesToIgnore == 0) return width;
    return std::min(width, static_cast<std::int32_t>((row.RowSize - row.BytesToIgnore) * 8 - 4));
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
    for (std::int32_t column = firstBlankedColumn(width); column < width; ++column)
        losses.columns += dots.hasBlackInColumn(column, endPrinted);
    return losses;
}

}  // namespace tavio::printing
