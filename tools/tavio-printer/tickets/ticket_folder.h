// A folder of tickets: ticket-000001.png and ticket-000001.bin, the picture and the job bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <string>

#include "TavioIpadSDK/machine/descriptor.h"
#include "tavio/virtual-printer/ticket.h"

namespace tavio::virtual_printer {

struct FolderLimits {
    std::size_t tickets = 0;  // 1 or more
    std::size_t bytes = 0;    // of all files together; the newest ticket is always kept
};

// Used by one thread at a time. Other files in the folder are left alone. Every file is always
// complete.
class TicketFolder {
  public:
    // Creates the folder if needed, and counts the tickets in it. Throws std::runtime_error, with
    // one sentence, if it cannot be created or written to, or if another printer writes to it.
    TicketFolder(std::string path, FolderLimits limits);

    // The highest number of a ticket in the folder; 0 if there is none.
    std::uint64_t newest() const;

    // Writes the files of ticket `id` that have content, and removes the oldest tickets past the
    // limits. Returns "" or the error as one sentence.
    std::string write(std::uint64_t id, std::span<const Byte> png, std::span<const Byte> bytes);

  private:
    std::string pathOf(std::uint64_t id, const char* extension) const;
    void lock();
    void readNames();
    std::string writeFile(std::uint64_t id, const char* extension, std::span<const Byte> content);
    std::string removeOldest();

    std::string path_;
    FolderLimits limits_;
    machine::Descriptor folder_;                  // with the lock on it
    std::map<std::uint64_t, std::size_t> sizes_;  // of each ticket, its files together
    std::size_t total_ = 0;
};

}  // namespace tavio::virtual_printer
