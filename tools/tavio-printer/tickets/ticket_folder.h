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
    std::size_t bytes = 0;    // of all files together; the newest ticket is kept whatever it takes
};

// For one thread at a time. What other files there are in the folder is left alone. A file is there
// completely or not at all, whenever one looks.
class TicketFolder {
  public:
    // Makes the folder where there is none, and counts the tickets in it. Throws
    // std::runtime_error, with one sentence, where it cannot be made or written to, or where
    // another printer writes to it.
    TicketFolder(std::string path, FolderLimits limits);

    // The highest number of a ticket in the folder; 0 when there is none.
    std::uint64_t newest() const;

    // Writes the files of ticket `id`, those that have content, and removes the oldest tickets
    // beyond the limits. Returns "" or, as one sentence, what could not be done.
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
