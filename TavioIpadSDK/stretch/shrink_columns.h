// The kernel that resamples a source row to fewer columns.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "TavioIpadSDK/stretch/axis.h"
#include "TavioIpadSDK/stretch/passed_row.h"

namespace tavio::stretch {

class ShrinkColumns {
  public:
    // `axis` must shrink.
    explicit ShrinkColumns(const Axis& axis);

    // passed = `row`, axis.source() pixels, averaged over each of axis.target() columns.
    void pass(std::span<const UInt32> row, PassedRow& passed);

  private:
    using Sums = std::array<std::uint32_t, kChannels>;

    void passPlainly(std::span<const UInt32> row, PassedRow& passed) const;

    std::size_t columns_;
    std::uint64_t total_;
    bool hasVectorForm_;  // vectors give exact results for this total
    // Of each column's beginning, and of the last one's end: its source pixel, and the part of that
    // pixel before it, in units of 1 / columns_.
    std::vector<std::uint32_t> pixel_;
    std::vector<std::uint32_t> part_;
    std::vector<Sums> before_;  // of each source pixel: the sum of those before it
    std::vector<Sums> within_;  // of each column: the weighted sum of the pixels that it covers
};

}  // namespace tavio::stretch
