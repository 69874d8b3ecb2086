// The file that a command reads.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/machine/descriptor.h"

namespace tavio::tool {

// The largest input that is read as a whole.
inline constexpr std::uint64_t kMaxInputBytes = std::uint64_t{1} << 30U;

// True for what can be read only once: "-" and the names of standard input, and a named pipe.
bool isStream(const std::string& path);

// True for "-" and "/dev/stdin".
bool isStandardInput(const std::string& path);

// A regular file or a stream, read from its beginning. Errors are thrown as a Failure that names the
// file: it does not exist, is a folder, is not a regular file, or cannot be read and why.
//
//   InputFile file("job.bin");
//   while (auto bytes = file.next(); !bytes.empty()) printer.feed(bytes);
class InputFile {
  public:
    explicit InputFile(const std::string& path);

    // The next bytes, 1 MiB at most, valid until the next call; empty at the end of the file.
    std::span<const Byte> next();

    // All bytes that have not been read yet. A Failure if there are more than `limit`.
    Bytes rest(std::uint64_t limit = kMaxInputBytes);

    // The name in messages.
    const std::string& name() const { return name_; }

  private:
    std::uint64_t size() const;

    std::string name_;
    machine::Descriptor file_;
    Bytes buffer_;
};

// True if both paths name the same file, so that writing the one would destroy the other.
bool areSameFile(const std::string& input, const std::string& output);

}  // namespace tavio::tool
