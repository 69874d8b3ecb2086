// A file that is written whole or not at all.
#pragma once

#include <span>
#include <string>
#include <sys/types.h>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/machine/descriptor.h"
#include "TavioIpadSDK/machine/export.h"

namespace tavio::links {

// A regular file (also one that does not exist yet) is written as a temporary file beside it, which
// commit() moves over it. Without commit() nothing changes. If the file system allows it, the
// temporary file has no name before commit(), so that not even a killed program leaves one. The new
// file keeps the permissions of the one it replaces. Symbolic links are followed, also one to a
// file that does not exist yet. Anything else (a device, a pipe) is written in place and cannot be
// taken back; so are /dev/stdout, /dev/stderr and /dev/fd/N, which mean the descriptor that is
// already open. A named pipe without a reader is refused.
//
//   OutputFile file("ticket.png");
//   if (!file.open() || !file.write(png) || !file.commit()) return tellTheUser(file.failure());
class TAVIO_API OutputFile {
  public:
    explicit OutputFile(std::string path) : path_(std::move(path)) {}
    OutputFile(OutputFile&& other) noexcept;
    OutputFile& operator=(OutputFile&&) = delete;
    ~OutputFile() { discard(); }

    // Each returns true on success. After a failure all later ones fail too. Without open(),
    // write() and commit() fail.
    bool open();
    bool write(std::span<const Byte> bytes);
    bool commit();

    // Drops the file, as far as that is possible.
    void discard() noexcept;

    const std::string& path() const { return path_; }

    // The reason of the first failure, e.g. "job.bin cannot be written: Permission denied"; "" if
    // there was none.
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
    std::string temporary_;  // name of the file that becomes the target; "" if it has none
    std::string failure_;
    bool isNameless_ = false;  // the temporary file has no name before commit()
    machine::Descriptor file_;
};

}  // namespace tavio::links
