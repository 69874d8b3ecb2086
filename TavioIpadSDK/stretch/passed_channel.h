// One channel of a passed row on its own: a row of grey values, four of which are passed as one row of
// pixels.
#pragma once

#include <cstddef>
#include <span>

#include "TavioIpadSDK/stretch/passed_row.h"

namespace tavio::stretch {

// The passed row must outlive it.
struct PassedChannel {
    std::span<const PassedBlock> blocks;
    std::size_t channel = 0;  // 0 to kChannels - 1

    // kBlockColumns values.
    const float* values(std::size_t block) const {
        return blocks[block].values + channel * kBlockColumns;
    }

    // `count` columns from `begin` on, where a block begins.
    PassedChannel part(std::size_t begin, std::size_t count) const {
        return {blocks.subspan(begin / kBlockColumns, blocksOf(count)), channel};
    }
};

}  // namespace tavio::stretch
