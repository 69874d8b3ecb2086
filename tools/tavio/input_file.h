// The file that a command reads.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/machine/descriptor.h"

namespace tavio::tool {

// A regular file, read from its beginning. Errors are thrown as a Failure that names the file: it
// does not exist, is a folder, is not a regular file, or cannot be read and why.
//
//   InputFile file("job.bin");
//   while (auto bytes = file.next(); !bytes.empty()) printer.feed(bytes);
class InputFile {
  public:
    explicit InputFile(std::string path);

    // The size in bytes; 0 if it is not known.
    std::uint64_t size() const;

    // The next bytes, 1 MiB at most, valid until the next call; empty at the end of the file.
    std::span<const Byte> next();

    // All bytes that have not been read yet.
    Bytes rest();

    // True if the path names this file, so that writing there would destroy it.
    bool isAt(const std::string& path) const;

  private:
    std::string path_;
    machine::Descriptor file_;
    Bytes buffer_;
};

}  // namespace tavio::tool
