// The second pass: the band stream is read back and written again without its long blank runs.
//
//   stream  := opening  { stretch }  closing
//   stretch := "<RC" row "," column "><G" columns ">" columns * byte
//
// band_scanner.h tells how bands are found, band_runs.h what becomes of their columns,
// stretch_places.h where the stretches go.
#pragma once

#include <span>
#include <vector>

#include "TavioIpadSDK/encoder/band_stream.h"
#include "TavioIpadSDK/encoder/runs.h"
#include "TavioIpadSDK/encoder/stream_bytes.h"
#include "TavioIpadSDK/platform/bytes.h"

namespace tavio::encoder {

// Writes `opening`, the bands' stretches, then `closing`. `lineMap` is left holding the last band's
// runs, its other entries empty; without any band it stays as it is. Throws StreamTooLong beyond
// 2^31 - 1 bytes, then the last band is the one that was too much, and std::bad_alloc.
//
// Takes time in proportion to the bytes read and written, whatever the graphics hold:
//
//   reading  each byte of the band stream a fixed number of times, together, for commands, for long
//            blank runs and for the last band's line map; zeros past the end are not walked
//   writing  each command found adds a fixed number of steps, and one for each stretch written for
//            it, however many runs its columns have
//
// The result is written into as many bytes as the band stream has, which is nearly always enough.
// Where it is not, the size is counted (stretch_count.h) and the result written once more.
//
// Memory: the first guess or the exact size of the result, the line map of one band, and of the
// band stream and its long runs what lies between the last band found and the end of its columns.
//
// Applications and printers rely on these bytes, oddities included:
//
//   bands are found by their positioning command wherever the bytes "<RC" stand, in the opening and
//   in graphics too. So a logo, whose first band has no positioning command, loses its top 8 rows;
//
//   in landscape, a band's first stretch after a skipped blank run lies at that run's length,
//   without the job's column added;
//
//   a band without any blank column keeps the first pass's commands, which for the first band in
//   portrait means the job's row instead of portraitDots less the job's row.
StreamBytes writeStretches(BandStream& bands, std::span<const Byte> opening,
                           const Placement& placement, std::vector<LineParser>& lineMap,
                           std::span<const Byte> closing = {});

}  // namespace tavio::encoder
