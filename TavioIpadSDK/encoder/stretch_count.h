// How many bytes the second pass writes, counted without writing them.
#pragma once

#include "TavioIpadSDK/encoder/band_reader.h"
#include "TavioIpadSDK/encoder/band_stream.h"
#include "TavioIpadSDK/encoder/stream_size.h"

namespace tavio::encoder {

// Adds the bytes that the stretches of all bands take, commands included; reader: at its beginning.
// Throws StreamTooLong; reader.band() is then the one that was too much.
//
// Takes time in proportion to the bytes read, whatever would be written: each command found adds a
// fixed number of steps, and one for each stretch of it; commands that would only repeat what
// another writes are counted together.
void countStretches(BandReader& reader, const Placement& placement, const Position& afterLastBand,
                    StreamSize& size);

}  // namespace tavio::encoder
