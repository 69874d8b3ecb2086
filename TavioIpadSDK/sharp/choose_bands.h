// The bands of an island: where each begins and how many of its rows it prints.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "TavioIpadSDK/sharp/band_costs.h"
#include "TavioIpadSDK/sharp/dot_window.h"
#include "TavioIpadSDK/sharp/dots.h"

namespace tavio::sharp {

struct Band {
    std::int32_t row = 0;     // of the picture
    std::int32_t height = 0;  // rows, 1 to kMaxBandRows

    bool operator==(const Band&) const = default;
};

// Every band height takes time. In a large picture hardly any band of fewer than kMinLargeHeight rows
// is worth it (at 600 dots an inch, text becomes 0.1 to 0.5 % longer without them), and an island with
// more than kMaxWords words is a photo or the like, which has full bands.
inline constexpr std::int64_t kMaxDotsForLowBands = std::int64_t{1} << 22;
inline constexpr int kMinLargeHeight = 5;
inline constexpr std::size_t kMaxWords = std::size_t{1} << 16;

// Chooses bands for any number of islands of one picture; its memory is used again for each.
class BandChooser {
  public:
    // The dots must outlive it.
    explicit BandChooser(const Dots& dots) : dots_(dots) {}

    // The bands from the top that together cost least. Every black dot is in one of them and none in
    // two. price: of a stretch's commands (band_costs.h). Valid until the next call.
    //
    // From the bottom row up, the least cost of all rows from there on is known: that of the row below,
    // if the row is blank, else the least of a band that begins here and what is below it.
    std::span<const Band> choose(const Rectangle& island, int price);

    // The bytes that the bands last chosen were found to cost.
    std::uint64_t cost() const { return best_.empty() ? 0 : best_.front(); }

  private:
    int minHeightFor(std::size_t words) const;
    void readBlock(const DotWindow& window, std::int32_t firstRow, std::int32_t bottom);
    void chooseOnRow(std::size_t row, std::size_t rowOfBlock, int minHeight);

    const Dots& dots_;
    std::vector<std::uint64_t> block_;
    std::vector<std::uint64_t> ors_;
    std::vector<std::uint64_t> costs_ = std::vector<std::uint64_t>(kMaxBandRows * kBlockRows);
    std::vector<std::uint64_t> inkOfRows_ = std::vector<std::uint64_t>(kBlockStride);  // 0: blank
    std::vector<std::uint64_t> best_;   // of all rows from this one of the island on
    std::vector<std::uint8_t> height_;  // of the band that begins on the row; 0: none
    std::vector<Band> bands_;
};

}  // namespace tavio::sharp
