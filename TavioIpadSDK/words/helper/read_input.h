// The whole of a file.
#pragma once

#include <optional>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::words_helper {

// Reads the regular file that is open as this file descriptor, from its first byte to its last, and
// closes it. None on an error.
std::optional<Bytes> readInput(int descriptor);

}  // namespace tavio::words_helper
