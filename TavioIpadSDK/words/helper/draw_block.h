// A block as dots.
#pragma once

#include <cstdint>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/words/helper/fit_block.h"

namespace tavio::words_helper {

struct Drawing {
    std::int32_t width = 0;
    std::int32_t height = 0;
    bool hasInk = false;
    Bytes rows;  // words/answer.h; empty if they cannot be drawn
};

// Draws a block that fits into its box.
Drawing drawBlock(const FittedBlock& fitted, const words::Setting& setting);

}  // namespace tavio::words_helper
