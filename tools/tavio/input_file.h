// The file that a command reads.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/machine/descriptor.h"

namespace tavio::tool {

// A regular file, read from its beginning. What goes wrong is thrown as a Failure that names the
// file: it does not exist, is a folder, is not a regular file, or cannot be read and why.
//
//   InputFile file("job.bin");
//   while (auto bytes = file.next(); !bytes.empty()) printer.feed(bytes);
class InputFile {
  public:
    explicit InputFile(std::string path);

    // Bytes in the file; 0 where that cannot be told.
    std::uint64_t size() const;

    // The next bytes, 1 MiB at most, valid until the next call; none at the end of the file.
    std::span<const Byte> next();

    // All bytes that have not been read yet.
    Bytes rest();

    // True when the path names this very file, so that writing there would destroy it.
    bool isAt(const std::string& path) const;

  private:
    std::string path_;
    machine::Descriptor file_;
    Bytes buffer_;
};

}  // namespace tavio::tool
