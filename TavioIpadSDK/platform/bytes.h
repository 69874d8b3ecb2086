// Byte containers, and reading a whole file into one.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tavio {

using Byte = std::uint8_t;     // one unsigned 8-bit value
using UInt32 = std::uint32_t;  // one unsigned 32-bit value
using Bytes = std::vector<Byte>;

}  // namespace tavio

namespace tavio::platform {

// True when anything (file, folder, device) exists at the path. A path with a NUL byte names
// nothing.
bool fileExists(const std::string& path);

// All bytes of the regular file at the path; none when there is no such file, when it is not a
// regular file (a pipe or a device could block or never end), when it cannot be opened or read, or
// when memory for it cannot be had. Never throws.
std::optional<Bytes> readWholeFile(const std::string& path) noexcept;

}  // namespace tavio::platform
