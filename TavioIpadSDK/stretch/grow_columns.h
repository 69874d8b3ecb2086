// The kernel that resamples a source row to as many columns or more.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "TavioIpadSDK/stretch/axis.h"
#include "TavioIpadSDK/stretch/passed_row.h"

namespace tavio::stretch {

class GrowColumns {
  public:
    // `axis` must grow, or stay as it is.
    explicit GrowColumns(const Axis& axis) : GrowColumns(axis, 0, axis.target()) {}

    // Only `count` columns (1 or more) from `begin` on.
    GrowColumns(const Axis& axis, std::uint64_t begin, std::uint64_t count);

    // passed = `row`, axis.source() pixels, blended into the columns.
    void pass(std::span<const UInt32> row, PassedRow& passed) const;

  private:
    void passPlainly(std::span<const UInt32> row, PassedRow& passed) const;

    std::size_t columns_;
    std::uint64_t total_;
    bool hasVectorForm_;  // vectors give exact results for this total
    // Of each column, and of the unused ones that fill the last block:
    std::vector<std::int32_t> first_;    // the left one of its two source pixels
    std::vector<std::uint32_t> beyond_;  // the weight of the right one, of total_
    std::vector<std::int32_t> whole_;    // that weight in units of 2^-16: the nearest whole number
    std::vector<std::int32_t> rest_;     // and the rest of it, in units of 2^-40
};

}  // namespace tavio::stretch
