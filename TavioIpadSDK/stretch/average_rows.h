// The kernel that averages passed rows into a target row.
#pragma once

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "TavioIpadSDK/stretch/passed_row.h"

namespace tavio::stretch {

// Weighted sums of PassedBlocks.
struct alignas(64) SumBlock {
    double values[kBlockValues];
};

// Adds up the passed rows that one target row covers and divides, one target row after the other.
class AverageRows {
  public:
    // The weights of the rows of each target row add up to `total`, 1 to 2^28.
    explicit AverageRows(std::uint64_t total) : total_(total) {
        assert(total >= 1 && total <= std::uint64_t{1} << 28);
    }

    void add(const PassedRow& row, std::uint64_t weight);

    // target[i] = in each channel the weighted mean of the rows added since the last call, rounded
    // half up. They have as many columns as `target`.
    void average(std::span<UInt32> target);

  private:
    void averagePlainly(std::span<UInt32> target) const;
    void averageInVectors(std::span<UInt32> target) const;

    std::uint64_t total_;
    std::vector<SumBlock> sums_;  // empty when nothing has been added
};

}  // namespace tavio::stretch
