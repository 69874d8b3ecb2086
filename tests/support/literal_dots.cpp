#include "support/literal_dots.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace tavio::test {
namespace {

using sharp::Dots;
using sharp::DotsPlace;

constexpr std::uint64_t kNever = std::numeric_limits<std::uint64_t>::max();

// A longer blank run is left out: no commands of a stretch are longer.
constexpr std::int32_t kMaxBlankRun = 30;

std::uint64_t digitsOf(std::int32_t number) {
    return number < 10 ? 1 : 1 + digitsOf(number / 10);
}

// "<RC" row "," column "><G" columns ">" and the columns.
std::uint64_t stretchBytes(const DotsPlace& place, std::int32_t column, std::int32_t row,
                           std::int32_t columns) {
    const sharp::PrinterPosition at = sharp::positionOf(place, column, row);
    return 3 + digitsOf(at.row) + 1 + digitsOf(at.column) + 3 + digitsOf(columns) + 1 +
           static_cast<std::uint64_t>(columns);
}

std::vector<bool> blackColumns(const Dots& dots, std::int32_t top, std::int32_t rows) {
    std::vector<bool> isBlack(static_cast<std::size_t>(dots.width));
    const std::int32_t bottom = std::min(top + rows, dots.height);
    for (std::int32_t x = 0; x < dots.width; ++x)
        for (std::int32_t y = top; y < bottom; ++y)
            if (dots.isBlack(x, y)) isBlack[static_cast<std::size_t>(x)] = true;
    return isBlack;
}

}  // namespace

std::uint64_t fewestBytesOfBand(const Dots& dots, const DotsPlace& place, std::int32_t top,
                                std::int32_t rows) {
    const std::vector<bool> isBlack = blackColumns(dots, top, rows);
    // fewest[x]: of the columns to the left of x.
    std::vector<std::uint64_t> fewest(isBlack.size() + 1, kNever);
    fewest[0] = 0;
    for (std::size_t end = 1; end <= isBlack.size(); ++end) {
        if (!isBlack[end - 1]) {
            fewest[end] = fewest[end - 1];
            continue;
        }
        std::int32_t blanks = 0;
        for (std::size_t start = end; start-- > 0 && blanks <= kMaxBlankRun;) {
            blanks = isBlack[start] ? 0 : blanks + 1;
            if (!isBlack[start]) continue;
            const std::uint64_t bytes = stretchBytes(place, static_cast<std::int32_t>(start), top,
                                                     static_cast<std::int32_t>(end - start));
            fewest[end] = std::min(fewest[end], fewest[start] + bytes);
        }
    }
    return fewest.back();
}

std::uint64_t fewestBytes(const Dots& dots, const DotsPlace& place) {
    const auto height = static_cast<std::size_t>(dots.height);
    std::vector<std::uint64_t> fewest(height + 8, 0);  // of the rows from this one on
    for (std::size_t row = height; row-- > 0;) {
        const auto top = static_cast<std::int32_t>(row);
        if (fewestBytesOfBand(dots, place, top, 1) == 0) {
            fewest[row] = fewest[row + 1];
            continue;
        }
        fewest[row] = kNever;
        for (std::size_t rows = 1; rows <= 8; ++rows) {
            const std::uint64_t band =
                fewestBytesOfBand(dots, place, top, static_cast<std::int32_t>(rows));
            fewest[row] = std::min(fewest[row], band + fewest[row + rows]);
        }
    }
    return fewest[0];
}

}  // namespace tavio::test
