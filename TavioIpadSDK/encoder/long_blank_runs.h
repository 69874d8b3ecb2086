// The blank runs of a command stream that are long enough to be left out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "TavioIpadSDK/encoder/band_stream.h"

namespace tavio::encoder {

// A blank run of this many columns or more is left out; a shorter one is sent as zeros.
inline constexpr std::int32_t kMinSkip = 19;

struct BlankRun {
    std::int64_t start;  // index of its first byte
    std::int64_t end;    // index after its last

    bool operator==(const BlankRun&) const = default;
};

// Reads a stream once and returns its zero runs of kMinSkip bytes or more. Shorter runs are never
// visited one by one. The stream's end is followed by endless zeros: the last run is open, and
// these bytes are not read.
class LongBlankRuns {
  public:
    static constexpr std::int64_t kOpen = std::numeric_limits<std::int64_t>::max();

    explicit LongBlankRuns(BandStream& stream) : stream_(stream) {}

    // The runs in ascending order, from the first that ends after `start` on. All that begin before
    // `end` are among them; further ones may follow. A run that continues past `end` may be
    // reported as kOpen long. start: never less than in the previous call. The result is valid
    // until the next call. The stream must still have the bytes that have not been marked.
    std::span<const BlankRun> between(std::int64_t start, std::int64_t end);

    // Bytes marked so far, also those past the end that fill the last block.
    std::size_t bytesMarked() const { return bytesMarked_; }

  private:
    static constexpr std::size_t kBlockWords = 64;

    void markBlock();
    void beginAt(std::int64_t start);
    void dropPassed(std::int64_t start);

    BandStream& stream_;
    std::int64_t asked_ = 0;      // the start of the last call
    std::int64_t marked_ = 0;     // all runs that begin before this are known
    std::uint64_t isOpen_ = 0;    // 1 if one of them has not ended yet
    std::vector<BlankRun> runs_;  // ascending
    std::size_t bytesMarked_ = 0;
    std::size_t first_ = 0;  // index of the first one that may still be needed
};

}  // namespace tavio::encoder
