// The kernel that blends two passed channels into a target row of one channel.
#pragma once

#include <cstdint>
#include <span>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/stretch/passed_channel.h"

namespace tavio::stretch {

// As blendRows, in one channel.
void blendChannels(const PassedChannel& upper, const PassedChannel& lower, std::uint64_t beyond,
                   std::uint64_t total, std::span<Byte> target);

}  // namespace tavio::stretch
