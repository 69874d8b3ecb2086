// The unit that stages are measured in: copying the resampled picture's pixels in memory.
#pragma once

#include <cstdint>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::benchmarks {

// Copies pictures of this size from one place in memory to another, after both have been used once.
class UnitCopy {
  public:
    UnitCopy(std::int32_t width, std::int32_t height);

    void copy();

    // The time of a copy under the present load.
    double seconds();

  private:
    std::vector<UInt32> from_;
    std::vector<UInt32> to_;
};

// A monotonic clock.
double secondsNow();

}  // namespace tavio::benchmarks
