// Reading a whole file into memory.
#pragma once

#include <optional>
#include <string>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::platform {

// True when anything (file, folder, device) exists at the path. A path with a NUL byte names
// nothing.
bool fileExists(const std::string& path);

// All bytes of the regular file at the path; none when there is no such file, when it is not a
// regular file (a pipe or a device could block or never end), when it cannot be opened or read, or
// when memory for it cannot be had. Never throws.
std::optional<Bytes> readWholeFile(const std::string& path) noexcept;

}  // namespace tavio::platform
