#include "tools/tavio-scan/part.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace tavio::scan {

namespace {

// The same dots with rows and columns exchanged, if they are read along columns.
class View {
  public:
    View(const Bitmap& bitmap, Along along) : bitmap_(bitmap), isAcross_(along == Along::kRows) {}

    std::int32_t lines() const { return isAcross_ ? bitmap_.height : bitmap_.width; }
    bool isBlack(std::int32_t line, std::int32_t at) const {
        return isAcross_ ? bitmap_.isBlack(at, line) : bitmap_.isBlack(line, at);
    }

  private:
    const Bitmap& bitmap_;
    bool isAcross_;
};

bool isBlankRow(const Bitmap& bitmap, const Part& part, std::int32_t row) {
    for (std::int32_t at = 0; at < part.width; ++at) {
        if (bitmap.isBlack(part.left + at, row)) return false;
    }
    return true;
}

bool isBlankColumn(const Bitmap& bitmap, const Part& part, std::int32_t column) {
    for (std::int32_t at = 0; at < part.height; ++at) {
        if (bitmap.isBlack(column, part.top + at)) return false;
    }
    return true;
}

// Squares of dots: which have black ones, and which of these were taken.
class Squares {
  public:
    Squares(const Bitmap& bitmap, std::int32_t side)
        : side_(side),
          columns_((bitmap.width + side - 1) / side),
          rows_((bitmap.height + side - 1) / side),
          isBlack_(static_cast<std::size_t>(columns_) * static_cast<std::size_t>(rows_)) {
        for (std::int32_t row = 0; row < bitmap.height; ++row) {
            for (std::int32_t column = 0; column < bitmap.width; ++column) {
                if (bitmap.isBlack(column, row)) isBlack_[indexOf(column / side, row / side)] = 1;
            }
        }
    }

    std::vector<Part> blots() {
        std::vector<Part> found;
        for (std::int32_t row = 0; row < rows_; ++row) {
            for (std::int32_t column = 0; column < columns_; ++column) {
                if (take(column, row)) found.push_back(blotFrom(column, row));
            }
        }
        return found;
    }

  private:
    struct Square {
        std::int32_t column;
        std::int32_t row;
    };

    std::size_t indexOf(std::int32_t column, std::int32_t row) const {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_) +
               static_cast<std::size_t>(column);
    }

    bool take(std::int32_t column, std::int32_t row) {
        if (column < 0 || row < 0 || column >= columns_ || row >= rows_) return false;
        return std::exchange(isBlack_[indexOf(column, row)], Byte{0}) != 0;
    }

    // In dots; it may reach past the bitmap.
    Part blotFrom(std::int32_t firstColumn, std::int32_t firstRow) {
        Square low{firstColumn, firstRow};
        Square high = low;
        std::vector<Square> open{low};
        while (!open.empty()) {
            const Square square = open.back();
            open.pop_back();
            low = {std::min(low.column, square.column), std::min(low.row, square.row)};
            high = {std::max(high.column, square.column), std::max(high.row, square.row)};
            for (std::int32_t row = square.row - 1; row <= square.row + 1; ++row) {
                for (std::int32_t column = square.column - 1; column <= square.column + 1;
                     ++column) {
                    if (take(column, row)) open.push_back({column, row});
                }
            }
        }
        return {low.column * side_, low.row * side_, (high.column - low.column + 1) * side_,
                (high.row - low.row + 1) * side_};
    }

    std::int32_t side_;
    std::int32_t columns_;
    std::int32_t rows_;
    std::vector<Byte> isBlack_;
};

}  // namespace

Part trimmed(const Bitmap& bitmap, Part part) {
    while (part.height > 0 && isBlankRow(bitmap, part, part.top)) {
        ++part.top;
        --part.height;
    }
    while (part.height > 0 && isBlankRow(bitmap, part, part.top + part.height - 1)) --part.height;
    while (part.width > 0 && isBlankColumn(bitmap, part, part.left)) {
        ++part.left;
        --part.width;
    }
    while (part.width > 0 && isBlankColumn(bitmap, part, part.left + part.width - 1)) --part.width;
    return part;
}

Part withWholeBars(const Bitmap& bitmap, Part part, Along along) {
    const View view(bitmap, along);
    const bool isAcross = along == Along::kRows;
    std::int32_t& first = isAcross ? part.top : part.left;
    std::int32_t& count = isAcross ? part.height : part.width;
    const std::int32_t start = isAcross ? part.left : part.top;
    const std::int32_t end = start + (isAcross ? part.width : part.height);
    const auto areSame = [&](std::int32_t line, std::int32_t other) {
        for (std::int32_t at = start; at < end; ++at) {
            if (view.isBlack(line, at) != view.isBlack(other, at)) return false;
        }
        return true;
    };
    if (count < 1) return part;
    for (; first > 0 && areSame(first - 1, first); ++count) --first;
    while (first + count < view.lines() && areSame(first + count, first + count - 1)) ++count;
    return part;
}

Part withAllBars(const Bitmap& bitmap, Part part, Along along, std::int32_t maxGap) {
    const bool isAcross = along == Along::kRows;
    std::int32_t& first = isAcross ? part.left : part.top;
    std::int32_t& count = isAcross ? part.width : part.height;
    const std::int32_t limit = isAcross ? bitmap.width : bitmap.height;
    const std::int32_t line = isAcross ? part.top + part.height / 2 : part.left + part.width / 2;
    const View view(bitmap, along);
    for (std::int32_t at = first - 1, white = 0; at >= 0 && white <= maxGap; --at) {
        white = view.isBlack(line, at) ? 0 : white + 1;
        if (white > 0) continue;
        count += first - at;
        first = at;
    }
    for (std::int32_t at = first + count, white = 0; at < limit && white <= maxGap; ++at) {
        white = view.isBlack(line, at) ? 0 : white + 1;
        if (white == 0) count = at + 1 - first;
    }
    return part;
}

bool doOverlap(const Part& left, const Part& right) {
    return left.left < right.left + right.width && right.left < left.left + left.width &&
           left.top < right.top + right.height && right.top < left.top + left.height;
}

std::vector<Part> blotsOf(const Bitmap& bitmap, std::int32_t square) {
    std::vector<Part> blots = Squares(bitmap, square).blots();
    for (Part& blot : blots) {
        blot.width = std::min(blot.width, bitmap.width - blot.left);
        blot.height = std::min(blot.height, bitmap.height - blot.top);
        blot = trimmed(bitmap, blot);
    }
    return blots;
}

Bitmap cutOut(const Bitmap& bitmap, const Part& part, std::int32_t margin) {
    Bitmap cut{part.width + 2 * margin, part.height + 2 * margin, {}};
    const auto width = static_cast<std::size_t>(cut.width);
    cut.dots.assign(width * static_cast<std::size_t>(cut.height), 255);
    for (std::int32_t row = 0; row < part.height; ++row) {
        const auto from = static_cast<std::ptrdiff_t>(part.top + row) * bitmap.width + part.left;
        const auto to = static_cast<std::ptrdiff_t>(margin + row) * cut.width + margin;
        std::copy_n(bitmap.dots.begin() + from, part.width, cut.dots.begin() + to);
    }
    return cut;
}

}  // namespace tavio::scan
