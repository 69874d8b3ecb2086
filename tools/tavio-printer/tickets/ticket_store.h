// The finished tickets, kept for the page and in a folder.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "tools/tavio-printer/device/device.h"

namespace tavio::virtual_printer {

class TicketFolder;

// A stored ticket, which never changes.
struct StoredTicket {
    std::uint64_t id = 0;  // from 1, in order of printing
    std::chrono::system_clock::time_point time;

    TicketSize size;  // of the picture: portrait tickets are turned upright
    Orientation orientation = Orientation::kLandscape;
    TicketEnd end = TicketEnd::kCut;
    std::uint64_t connection = 0;
    std::uint64_t number = 0;  // of its stream
    std::uint64_t blackDots = 0;
    std::uint64_t dotsOff = 0;
    std::vector<Byte> png;
    std::vector<Byte> bytes;      // at most kMaxTicketBytes are kept
    std::uint64_t byteCount = 0;  // all of them
    ProblemList problems;         // offsets from the ticket's first byte
};

struct StoreLimits {
    std::size_t tickets = 200;                    // 1 or more
    std::size_t bytes = std::size_t{256} << 20U;  // of pictures and job bytes together

    // A folder for ticket-000001.png and ticket-000001.bin; "" for none. It holds as many tickets
    // as the store.
    std::string folder;
};

// Safe for any number of threads. Past a limit the oldest tickets are removed, also from the
// folder. A single ticket larger than the limit is kept without its job bytes.
class TicketStore {
  public:
    // Throws std::runtime_error, with one sentence, if the folder cannot be created or written to.
    // Tickets of earlier runs stay in the folder and count; the new ones are numbered after them.
    explicit TicketStore(const StoreLimits& limits);
    ~TicketStore();
    TicketStore(const TicketStore&) = delete;
    TicketStore& operator=(const TicketStore&) = delete;

    // Gives the ticket an id and keeps it. Returns "" or, as one sentence, why its files could not
    // be written; then the ticket is still kept in memory.
    std::string add(const DeviceTicket& ticket);

    using TicketPointer = std::shared_ptr<const StoredTicket>;

    // Null if there is no ticket with this id, or if it has been removed.
    TicketPointer find(std::uint64_t id) const;

    // The tickets with ids above `after`, oldest first, at most `limit`.
    std::vector<TicketPointer> since(std::uint64_t after, std::size_t limit = SIZE_MAX) const;

    // The ids of the oldest and of the newest ticket kept; 0 and 0 if there is none.
    std::uint64_t oldest() const;
    std::uint64_t newest() const;

    // Waits until there is a ticket above `after`, but no longer than `limit`; true if there is.
    // stop() ends all waiting for good.
    bool waitForMore(std::uint64_t after, std::chrono::milliseconds limit) const;
    void stop();
    bool isStopped() const;

  private:
    std::string keep(const std::shared_ptr<StoredTicket>& ticket);
    void removeOldest();

    StoreLimits limits_;

    // Held while a ticket is added, so that files are written in the order of their numbers, but
    // pages do not wait for the files.
    std::mutex adding_;
    std::unique_ptr<TicketFolder> folder_;

    mutable std::mutex mutex_;  // guards everything below
    mutable std::condition_variable changed_;
    std::deque<TicketPointer> tickets_;  // ids without gaps, the oldest first
    std::size_t bytes_ = 0;
    std::uint64_t lastId_ = 0;
    bool stopped_ = false;
};

}  // namespace tavio::virtual_printer
