// The runs of blank and printing bytes in a command stream.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "TavioIpadSDK/encoder/state.h"

namespace tavio::encoder {

// Where a whole stream changes between zero and non-zero bytes. Found once, so that the runs of any
// stretch of the stream are listed in the time it takes to write them down: graphics may hold bytes
// that look like commands, and then the same columns are mapped many times over.
class RunIndex {
  public:
    explicit RunIndex(std::span<const Byte> stream);

    // Overwrites map[0 : result] with the runs of the `count` bytes from index `start` on; zero and
    // non-zero runs take turns. Bytes behind the stream's end count as zeros. Grows the map where
    // it is too small; entries that are not needed are left as they are. A `count` of 0 or less
    // gives no run. start: 0 or more, never less than in the call before.
    std::size_t mapRuns(std::int64_t start, std::int32_t count, std::vector<LineParser>& map);

  private:
    bool isData(std::size_t run) const { return (run % 2 == 0) == firstIsData_; }

    std::int64_t size_;                 // bytes in the stream
    bool firstIsData_;                  // run 0 is a data run; the others take turns
    std::vector<std::int32_t> starts_;  // starts_[r] is the index of run r's first byte; ascending
    std::size_t cursor_ = 0;            // the run that held the last `start`
};

}  // namespace tavio::encoder
