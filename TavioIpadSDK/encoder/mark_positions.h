// The kernel that finds positioning commands: one bit for each byte of a command stream.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::encoder {

// Bit b of word w is 1 if bytes[64 w + b] and the two bytes after it are "<RC".
void markPositions(std::span<const Byte> bytes, std::span<std::uint64_t> words);

}  // namespace tavio::encoder
