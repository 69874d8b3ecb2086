// A link that writes the job into a file.
#pragma once

#include "TavioIpadSDK/machine/export.h"
#include "tavio/links/local_link.h"
#include "tavio/links/output_file.h"

namespace tavio::links {

// The file holds exactly the bytes that went to the transport while the link was open, in order. A
// regular file is created or replaced only by commit(). Devices, pipes and /dev/stdout receive the
// bytes at once.
//
//   auto link = std::make_shared<links::FileLink>("job.bin");
//   links::useLink(link);
//   OpenSessionWiFi("job.bin"); SendFile(url, 10, 20); CloseSessionWiFi();
//   if (!link->commit()) return tellTheUser(link->failure());  // only now job.bin is there
class TAVIO_API FileLink : public LocalLink {
  public:
    explicit FileLink(std::string path) : file_(std::move(path)) {}

    // Creates or replaces the file, after close(); true on success.
    bool commit();

  protected:
    bool begin(const std::string& address) override;
    bool take(std::span<const Byte> bytes) override;

  private:
    OutputFile file_;
};

}  // namespace tavio::links
