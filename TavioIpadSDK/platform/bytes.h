// Reading a whole file into memory.
#pragma once

#include <optional>
#include <string>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/machine/export.h"

namespace tavio::platform {

// True if anything (file, folder, device) exists at the path. A path with a NUL byte names nothing.
TAVIO_API bool fileExists(const std::string& path);

// All bytes of the regular file at the path. None if the file does not exist, cannot be opened or
// read, is not regular (a pipe or a device could block or never end), or if there is no memory for
// it. Never throws.
TAVIO_API std::optional<Bytes> readWholeFile(const std::string& path) noexcept;

}  // namespace tavio::platform
