// The largest size at which words fit into their box.
#pragma once

#include <cstdint>

#include "TavioIpadSDK/words/helper/block.h"

namespace tavio::words_helper {

struct FittedBlock {
    Block block;
    double size = 0;  // points
    bool fits = false;

    // The block with its inset.
    std::int32_t width = 0;
    std::int32_t height = 0;
};

// Sizes from the asked one down to the smallest are tried. Words are broken at the end of a line only
// if they do not fit whole at any of them. If nothing fits, the block is of the smallest size.
FittedBlock fitBlock(Text& text, const words::Setting& setting);

}  // namespace tavio::words_helper
