// The kernel that finds positioning commands: one bit for each byte of a command stream.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::encoder {

// Bit b of word w says whether "<RC" stands at bytes[64 w + b], with nothing of it behind
// the last byte.
void markPositions(std::span<const Byte> bytes, std::span<std::uint64_t> words);

}  // namespace tavio::encoder
