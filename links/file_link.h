// A link that writes what was sent into a file.
#pragma once

#include "links/link.h"
#include "links/output_file.h"

namespace tavio::links {

// The file holds exactly the bytes that went to the transport while the link was open, in order. A
// regular file appears, or is replaced, only when commit() is called: before that, and without it,
// everything is as it was. Devices, pipes and /dev/stdout receive the bytes at once.
class FileLink : public Link {
  public:
    explicit FileLink(std::string path) : file_(std::move(path)) {}

    // Puts the file in its place, after close(); true on success.
    bool commit() { return file_.commit(); }

    bool open(const std::string& address) override;
    bool write(std::span<const Byte> bytes) override;
    Text read() override { return std::nullopt; }
    void close() override { open_ = false; }
    std::string failure() const override { return file_.failure(); }

  private:
    OutputFile file_;
    bool open_ = false;
};

}  // namespace tavio::links
