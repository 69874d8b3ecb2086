// The second pass: the band stream is read back and written again without its long blank runs.
//
//   stream  := opening  { stretch }  closing
//   stretch := "<RC" row "," column "><G" columns ">" columns * byte
//
// band_scanner.h has the rule for finding bands, band_runs.h that for their columns,
// stretch_places.h that for the places of stretches.
#pragma once

#include <span>
#include <vector>

#include "TavioIpadSDK/encoder/band_stream.h"
#include "TavioIpadSDK/encoder/runs.h"
#include "TavioIpadSDK/encoder/stream_bytes.h"
#include "TavioIpadSDK/platform/bytes.h"

namespace tavio::encoder {

// Writes `opening`, the bands' stretches, then `closing`. Afterwards `lineMap` has the last band's
// runs, and its other entries are empty; without any band it does not change. Throws StreamTooLong
// past 2^31 - 1 bytes (the last band is then the one that exceeded it) and std::bad_alloc.
//
// Takes time in proportion to the bytes read and written, for any graphics:
//
//   reading  each byte of the band stream a fixed number of times, together, for commands, for long
//            blank runs and for the last band's line map; zeros past the end are not walked
//   writing  each command found adds a fixed number of steps, and one for each stretch written for
//            it, however many runs its columns have
//
// The result is written into as many bytes as the band stream has, which is nearly always enough.
// If it is not, the size is counted (stretch_count.h) and the result is written again.
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
