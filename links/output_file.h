// A file that is written whole or not at all.
#pragma once

#include <span>
#include <string>
#include <sys/types.h>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/machine/descriptor.h"

namespace tavio::links {

// A regular file (also one that does not exist yet) is written as a temporary file beside it, which
// commit() moves over it; a file that is not committed is as if it had never been begun. Where the
// file system allows it, the temporary file has no name before that, and even a program that is
// killed leaves nothing behind. The new file keeps the permissions of the one it replaces, and a
// symbolic link keeps pointing at it, also one that pointed at nothing before.
// Anything else (a device, a pipe) is written in place and cannot be taken back; so are
// /dev/stdout, /dev/stderr and /dev/fd/N, which mean the descriptor that is already open. A named
// pipe that nobody reads is refused.
//
//   OutputFile file("ticket.png");
//   if (!file.open() || !file.write(png) || !file.commit()) return tellTheUser(file.failure());
class OutputFile {
  public:
    explicit OutputFile(std::string path) : path_(std::move(path)) {}
    OutputFile(OutputFile&& other) noexcept;
    OutputFile& operator=(OutputFile&&) = delete;
    ~OutputFile() { discard(); }

    // Each returns true on success. After a failure all later ones fail too; write() and commit()
    // also without an open().
    bool open();
    bool write(std::span<const Byte> bytes);
    bool commit();

    // Takes the file back, as far as that is possible.
    void discard() noexcept;

    const std::string& path() const { return path_; }

    // Why the first step that failed did so, e.g. "job.bin cannot be written: Permission denied";
    // "" as long as none has.
    const std::string& failure() const { return failure_; }

  private:
    bool openInPlace(int descriptor);
    bool openSpecial();
    bool openTemporary();
    bool openNamed(mode_t permissions);
    bool giveName();
    bool fail(int errorNumber);
    bool fail(const std::string& why);

    std::string path_;
    std::string target_;     // path_ with symbolic links followed: the file to be replaced
    std::string temporary_;  // name of the file that becomes the target; "" while it has none
    std::string failure_;
    bool nameless_ = false;  // what is written has no name before commit()
    machine::Descriptor file_;
};

}  // namespace tavio::links
