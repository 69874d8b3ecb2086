// The second pass: the band stream is read back and written again without its long blank runs.
//
//   stream  := opening  { stretch }
//   stretch := "<RC" row "," column "><G" columns ">" columns * byte
//
// The pass finds bands by their positioning command wherever the bytes "<RC" stand, in the opening
// and in graphics bytes too. So a logo, whose first band has no positioning command, loses its top
// 8 rows; printers are loaded with such logos, and it stays so.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "TavioIpadSDK/encoder/band_stream.h"
#include "TavioIpadSDK/encoder/state.h"

namespace tavio::encoder {

// A blank run of this many columns or more is left out; a shorter one is sent as zeros.
inline constexpr std::int32_t kShortestSkip = 19;

// Writes `opening`, then the bands' stretches. `lineMap` is left holding the last band's runs, its
// other entries empty. Throws StreamTooLong beyond 2^31 - 1 bytes and std::bad_alloc.
//
// Positions are the printer's own, with two asymmetries that stay: in landscape, a band's first
// stretch that follows a skipped blank run lies at that run's length, without originaly added; and
// a band without any blank column keeps the first pass's commands, which for the first band in
// portrait means row originalx instead of portraitDots - originalx.
Bytes writeStretches(const BandStream& bands, std::span<const Byte> opening,
                     const Placement& placement, std::vector<LineParser>& lineMap);

}  // namespace tavio::encoder
