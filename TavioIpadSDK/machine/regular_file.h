// A regular file that is open for reading.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/machine/descriptor.h"

namespace tavio::machine {

class RegularFile {
  public:
    // Returns a null pointer if the file does not exist, cannot be opened, or is not regular (a
    // pipe or a device could block or never end). A path with a NUL byte names no file. Throws
    // std::bad_alloc.
    static std::unique_ptr<RegularFile> open(const std::string& path);

    // Its length in bytes at this moment.
    std::uint64_t size() const;

    // Reads from `offset` on until `into` is full or the file ends. Returns the number of bytes, or
    // none if the file cannot be read.
    std::optional<std::size_t> read(std::span<Byte> into, std::uint64_t offset) const;

  private:
    explicit RegularFile(Descriptor file) : file_(std::move(file)) {}

    Descriptor file_;
};

}  // namespace tavio::machine
