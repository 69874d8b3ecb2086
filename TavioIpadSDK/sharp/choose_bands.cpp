#include "TavioIpadSDK/sharp/choose_bands.h"

#include <algorithm>
#include <cstddef>

namespace tavio::sharp {

int BandChooser::minHeightFor(std::size_t words) const {
    if (words > kMaxWords) return kMaxBandRows;
    const bool isLarge = std::int64_t{dots_.width} * dots_.height > kMaxDotsForLowBands;
    return isLarge ? kMinLargeHeight : 1;
}

// The rows from firstRow on, those from `bottom` on as blank ones.
void BandChooser::readBlock(const DotWindow& window, std::int32_t firstRow, std::int32_t bottom) {
    block_.assign(kBlockStride * window.words(), 0);
    const std::int32_t rows = std::min(bottom - firstRow, static_cast<std::int32_t>(kBlockStride));
    std::fill(inkOfRows_.begin(), inkOfRows_.end(), std::uint64_t{0});
    for (std::int32_t row = 0; row < rows; ++row) {
        const auto y = static_cast<std::size_t>(row);
        window.forEachWord(firstRow + row, [this, y](std::size_t i, std::uint64_t word) {
            block_[kBlockStride * i + y] = word;
            inkOfRows_[y] |= word;
        });
    }
}

void BandChooser::chooseOnRow(std::size_t row, std::size_t rowOfBlock, int minHeight) {
    if (inkOfRows_[rowOfBlock] == 0) {
        best_[row] = best_[row + 1];
        height_[row] = 0;
        return;
    }
    // A cost and the rows that the band lacks in one number: of equal costs the highest band is best.
    std::uint64_t best = ~std::uint64_t{0};
    for (int height = minHeight; height <= kMaxBandRows; ++height) {
        const auto rows = static_cast<std::size_t>(height);
        const std::uint64_t cost = costs_[kBlockRows * (rows - 1) + rowOfBlock] + best_[row + rows];
        best = std::min(best, cost * kMaxBandRows + (kMaxBandRows - rows));
    }
    best_[row] = best / kMaxBandRows;
    height_[row] = static_cast<std::uint8_t>(kMaxBandRows - best % kMaxBandRows);
}

std::span<const Band> BandChooser::choose(const Rectangle& island, int price) {
    const DotWindow window(dots_, island);
    const auto rows = static_cast<std::size_t>(island.bottom - island.top);
    const int minHeight = minHeightFor(rows * window.words());
    best_.assign(rows + kMaxBandRows, 0);
    height_.assign(rows, 0);
    ors_.resize(kBlockStride * window.words());
    for (std::size_t block = (rows + kBlockRows - 1) / kBlockRows; block-- > 0;) {
        const std::size_t first = block * kBlockRows;
        const std::size_t rowCount = std::min(kBlockRows, rows - first);
        readBlock(window, island.top + static_cast<std::int32_t>(first), island.bottom);
        bandCosts(block_, rowCount, price, minHeight, ors_, costs_);
        for (std::size_t y = rowCount; y-- > 0;) chooseOnRow(first + y, y, minHeight);
    }
    bands_.clear();
    for (std::size_t row = 0; row < rows; row += std::max<std::size_t>(height_[row], 1)) {
        if (height_[row] == 0) continue;
        const std::size_t height = std::min<std::size_t>(height_[row], rows - row);
        bands_.push_back(
            {island.top + static_cast<std::int32_t>(row), static_cast<std::int32_t>(height)});
    }
    return bands_;
}

}  // namespace tavio::sharp
