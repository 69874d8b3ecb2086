// The unit that stages are measured in: copying the fitted picture's pixels in memory.
#pragma once

#include <cstdint>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::benchmarks {

// Copies pictures of this size from one place in memory to another, both in use already.
class UnitCopy {
  public:
    UnitCopy(std::int32_t width, std::int32_t height);

    void copy();

    // What a copy takes at this moment.
    double seconds();

  private:
    std::vector<UInt32> from_;
    std::vector<UInt32> to_;
};

// A clock that only runs forward.
double secondsNow();

}  // namespace tavio::benchmarks
