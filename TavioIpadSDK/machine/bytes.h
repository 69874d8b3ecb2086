// Bytes, words, and containers of bytes.
#pragma once

#include <cstdint>
#include <vector>

namespace tavio {

using Byte = std::uint8_t;     // one unsigned 8-bit value
using UInt32 = std::uint32_t;  // one unsigned 32-bit value
using Bytes = std::vector<Byte>;

}  // namespace tavio
