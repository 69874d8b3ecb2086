#include "TavioIpadSDK/stretch/average_channels.h"

#include <cstddef>

#include "TavioIpadSDK/stretch/axis.h"

namespace tavio::stretch {

void AverageChannels::add(const PassedChannel& row, std::uint64_t weight) {
    assert(sums_.empty() || sums_.size() == row.blocks.size() * kBlockColumns);
    sums_.resize(row.blocks.size() * kBlockColumns);
    const auto factor = static_cast<double>(weight);
    for (std::size_t column = 0; column < sums_.size(); ++column) {
        const float value = row.values(column / kBlockColumns)[column % kBlockColumns];
        sums_[column] += factor * static_cast<double>(value);
    }
}

void AverageChannels::average(std::span<Byte> target) {
    assert(sums_.size() >= target.size());
    const Divider divider(total_);
    for (std::size_t column = 0; column < target.size(); ++column) {
        const std::uint64_t exact = static_cast<std::uint64_t>(sums_[column]) - kMargin * total_;
        target[column] = static_cast<Byte>(divider.quotient(exact >> kFractionBits));
    }
    sums_.clear();
}

}  // namespace tavio::stretch
