// Slow, obvious forms of halftoning, and of the paper that is looked at afterwards.
#pragma once

#include <cstdint>
#include <span>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/sharp/dots.h"
#include "TavioIpadSDK/sharp/halftone.h"

namespace tavio::test {

// greys: width * height values, top row first.
sharp::Dots halftoneLiterally(std::int32_t width, std::int32_t height, std::span<const Byte> greys,
                              const sharp::Halftone& halftone);

// The share of the paper, 0 to 1, that stays white if each black dot is a disc 1.2 dots wide: of the
// dots in these columns and rows.
struct DotRange {
    std::int32_t left, top, right, bottom;
};
double whiteShare(const sharp::Dots& dots, const DotRange& range, double dotWidth = 1.2);

}  // namespace tavio::test
