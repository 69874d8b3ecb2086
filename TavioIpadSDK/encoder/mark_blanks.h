// The kernel that marks blank columns: one bit for each byte of a command stream.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::encoder {

// Bit b of word w is 1 if bytes[64 w + b] is 0. Bytes past the last one count as 0.
void markBlanks(std::span<const Byte> bytes, std::span<std::uint64_t> words);

}  // namespace tavio::encoder
