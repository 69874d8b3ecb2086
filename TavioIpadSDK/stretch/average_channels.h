// The kernel that averages passed channels into a target row of one channel.
#pragma once

#include <cassert>
#include <cstdint>
#include <span>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/stretch/passed_channel.h"

namespace tavio::stretch {

// Weighted sums of one channel of a PassedBlock.
struct alignas(64) ChannelSums {
    double values[kBlockColumns];
};

// As AverageRows, in one channel.
class AverageChannels {
  public:
    // The weights of the rows of each target row add up to `total`, 1 to 2^28.
    explicit AverageChannels(std::uint64_t total) : total_(total) {
        assert(total >= 1 && total <= std::uint64_t{1} << 28);
    }

    void add(const PassedChannel& row, std::uint64_t weight);

    // target[i] = the weighted mean of the rows added since the last call, rounded half up. They have
    // as many columns as `target`.
    void average(std::span<Byte> target);

  private:
    void averagePlainly(std::span<Byte> target) const;
    void averageInVectors(std::span<Byte> target) const;

    std::uint64_t total_;
    std::vector<ChannelSums> sums_;  // empty when nothing has been added
};

}  // namespace tavio::stretch
