// Bytes as a file that no file system sees.
#pragma once

#include <span>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/machine/descriptor.h"

namespace tavio::helper {

// A file in memory that holds the bytes and cannot be changed any more. On failure none, with errno
// set.
machine::Descriptor sealedFile(std::span<const Byte> bytes);

}  // namespace tavio::helper
