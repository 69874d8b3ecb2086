#include "TavioIpadSDK/stretch/blend_channels.h"

#include <cassert>
#include <cstddef>

#include "TavioIpadSDK/stretch/axis.h"

namespace tavio::stretch {

void blendChannels(const PassedChannel& upper, const PassedChannel& lower, std::uint64_t beyond,
                   std::uint64_t total, std::span<Byte> target) {
    assert(total >= 2 && total % 2 == 0 && total <= std::uint64_t{1} << 29 && beyond <= total);
    const Divider divider(total);
    for (std::size_t column = 0; column < target.size(); ++column) {
        const std::size_t block = column / kBlockColumns;
        const std::size_t at = column % kBlockColumns;
        const auto u = static_cast<std::uint64_t>(upper.values(block)[at]) - kMargin;
        const auto v = static_cast<std::uint64_t>(lower.values(block)[at]) - kMargin;
        const std::uint64_t sum = u * (total - beyond) + v * beyond;
        target[column] = static_cast<Byte>(divider.quotient(sum >> kFractionBits));
    }
}

}  // namespace tavio::stretch
