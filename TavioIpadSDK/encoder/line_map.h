// The runs of blank and printing bytes in a command stream.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "TavioIpadSDK/encoder/runs.h"
#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::encoder {

// Overwrites map[0 : result] with the runs of the `count` bytes from index `start` of a stream on;
// zero and non-zero runs take turns. Empties all other entries; a map of fewer entries than
// LINEMAPMAX, or than there are runs, grows. A `count` of 0 or less gives no run. start: 0 or more.
//
// columns: these bytes, as far as the stream has them. After its end zeros follow, which are
// counted without a loop.
std::size_t mapRuns(std::span<const Byte> columns, std::int64_t start, std::int32_t count,
                    std::vector<LineParser>& map);

}  // namespace tavio::encoder
