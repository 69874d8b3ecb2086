// Rows in grey resampled to the target's width.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <variant>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/machine/uncleared_bytes.h"
#include "TavioIpadSDK/sharp/grey_rows.h"
#include "TavioIpadSDK/stretch/axis.h"
#include "TavioIpadSDK/stretch/grow_columns.h"
#include "TavioIpadSDK/stretch/passed_channel.h"
#include "TavioIpadSDK/stretch/passed_row.h"
#include "TavioIpadSDK/stretch/shrink_columns.h"

namespace tavio::sharp {

// Four rows at a time are the channels of one row of pixels. The last two such groups are kept.
class PassedGreys {
  public:
    // Of the columns of a picture that grows in width only `count` from `begin` on are made.
    PassedGreys(std::unique_ptr<GreyRows> source, const stretch::Axis& columns, std::uint64_t begin,
                std::uint64_t count);

    // The group that a row is passed with.
    static constexpr std::uint64_t groupOf(std::uint64_t index) { return index / kGroup; }

    // Valid until a row of the next group but one is asked for. `index` must not be smaller than that
    // of the last call by more than 1.
    stretch::PassedChannel row(std::uint64_t index);

    // Reads what is left of the source.
    void finish();

  private:
    static constexpr std::size_t kGroup = stretch::kChannels;
    using Rows = std::array<const Byte*, kGroup>;

    Rows nextGroup();
    std::span<const Byte> nextRow();
    void interleave(const Rows& rows);

    std::variant<stretch::GrowColumns, stretch::ShrinkColumns> pass_;
    std::unique_ptr<GreyRows> source_;
    std::size_t line_;            // the source's width
    std::uint64_t sourceLeft_;    // rows not read yet
    std::span<const Byte> rows_;  // delivered by the source and not passed yet
    machine::UnclearedBytes gathered_;
    std::vector<UInt32> pixels_;
    std::array<stretch::PassedRow, 2> kept_;
    std::uint64_t groups_ = 0;  // read
};

}  // namespace tavio::sharp
