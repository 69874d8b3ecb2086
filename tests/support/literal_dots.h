// The slow, obvious twin of the choice of stretches for dots.
#pragma once

#include <cstdint>

#include "TavioIpadSDK/sharp/dots.h"
#include "TavioIpadSDK/sharp/dots_place.h"

namespace tavio::test {

// The fewest bytes in which bands print the picture, without its opening: bands of up to 8 rows begin
// on any rows, and each is cut into stretches wherever that is best. All numbers are counted digit by
// digit.
std::uint64_t fewestBytes(const sharp::Dots& dots, const sharp::DotsPlace& place);

// The fewest bytes for one band: rows [top, top + rows) of the picture.
std::uint64_t fewestBytesOfBand(const sharp::Dots& dots, const sharp::DotsPlace& place,
                                std::int32_t top, std::int32_t rows);

}  // namespace tavio::test
