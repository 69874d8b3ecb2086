// Counting the bytes of the second pass without writing them.
#pragma once

#include "TavioIpadSDK/encoder/band_reader.h"
#include "TavioIpadSDK/encoder/band_stream.h"
#include "TavioIpadSDK/encoder/stream_size.h"

namespace tavio::encoder {

// Adds the bytes of the stretches of all bands, commands included; reader: at its beginning. Throws
// StreamTooLong; then reader.band() is the band that exceeded the limit.
//
// Takes time in proportion to the bytes read, not to those that would be written: each command
// found adds a fixed number of steps, and one for each of its stretches. Commands that repeat the
// stretches of another one are counted together.
void countStretches(BandReader& reader, const Placement& placement, const Position& afterLastBand,
                    StreamSize& size);

}  // namespace tavio::encoder
