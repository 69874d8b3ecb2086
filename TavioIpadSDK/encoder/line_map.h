// The runs of blank and printing bytes in a command stream.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "TavioIpadSDK/encoder/state.h"

namespace tavio::encoder {

// Overwrites map[0 : result] with the runs of the `count` bytes from index `start` of a stream on;
// zero and non-zero runs take turns. Grows the map where it is too small, and empties the entries
// that are not needed. A `count` of 0 or less gives no run. start: 0 or more.
//
// columns: those of these bytes that the stream has. Where it ends early, zeros follow; they are
// counted, not walked.
std::size_t mapRuns(std::span<const Byte> columns, std::int64_t start, std::int32_t count,
                    std::vector<LineParser>& map);

}  // namespace tavio::encoder
