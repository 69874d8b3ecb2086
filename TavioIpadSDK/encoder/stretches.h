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
#include "TavioIpadSDK/encoder/long_blank_runs.h"
#include "TavioIpadSDK/encoder/runs.h"
#include "TavioIpadSDK/encoder/stream_buffer.h"

namespace tavio::encoder {

// Writes `opening`, the bands' stretches, then `closing`. `lineMap` is left holding the last band's
// runs, its other entries empty; without any band it stays as it is. Throws StreamTooLong beyond
// 2^31 - 1 bytes, then the last band is the one that was too much, and std::bad_alloc.
//
// Takes time in proportion to the bytes read and written, whatever the graphics hold:
//
//   reading  each byte of the band stream a fixed number of times, together, for commands, for long
//            blank runs and for the last band's line map; zeros behind the end are not walked
//   writing  each command found adds a fixed number of steps, and one for each stretch written for
//            it, however many runs its columns have; what does not fit the first guess of the size
//            (as long as the band stream) is only counted, then written once more
//
// Memory: the first guess or the exact size of the result, the line map of one band, and of the
// band stream and its long runs what lies between the last band found and the end of its columns.
//
// Positions are the printer's own, with two asymmetries that stay: in landscape, a band's first
// stretch that follows a skipped blank run lies at that run's length, without originaly added; and
// a band without any blank column keeps the first pass's commands, which for the first band in
// portrait means row originalx instead of portraitDots - originalx.
StreamBytes writeStretches(BandStream& bands, std::span<const Byte> opening,
                           const Placement& placement, std::vector<LineParser>& lineMap,
                           std::span<const Byte> closing = {});

}  // namespace tavio::encoder
