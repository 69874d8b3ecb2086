// The tickets that came out, kept for the page that shows them and in a folder.
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

// A ticket as it is kept; never changed once it is in the store.
struct StoredTicket {
    std::uint64_t id = 0;  // from 1, in the order in which they came out
    std::chrono::system_clock::time_point time;

    TicketSize size;  // as the picture shows it: portrait tickets are turned upright
    Orientation orientation = Orientation::kLandscape;
    TicketEnd end = TicketEnd::kCut;
    std::uint64_t connection = 0;
    std::uint64_t number = 0;  // of its stream
    std::uint64_t blackDots = 0;
    std::uint64_t dotsOff = 0;
    std::vector<Byte> png;
    std::vector<Byte> bytes;      // at most kMaxTicketBytes
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

// Safe for any number of threads. When a limit is reached the oldest tickets go, from the folder
// too. A single ticket larger than the limit is kept without its job bytes.
class TicketStore {
  public:
    // Throws std::runtime_error, with one sentence, where the folder cannot be made or written to.
    // Tickets of earlier runs stay in the folder, are counted, and are numbered before the new ones.
    explicit TicketStore(const StoreLimits& limits);
    ~TicketStore();
    TicketStore(const TicketStore&) = delete;
    TicketStore& operator=(const TicketStore&) = delete;

    // Gives the ticket an id and keeps it. Returns "" or, as one sentence, why its files could not
    // be written; the ticket is kept in memory all the same.
    std::string add(const DeviceTicket& ticket);

    using TicketPointer = std::shared_ptr<const StoredTicket>;

    // Null when there is none of that id, or no more.
    TicketPointer find(std::uint64_t id) const;

    // Those with ids above `after`, oldest first, at most so many.
    std::vector<TicketPointer> since(std::uint64_t after, std::size_t most = SIZE_MAX) const;

    // The ids of the oldest ticket kept and of the newest; 0 and 0 when there is none.
    std::uint64_t oldest() const;
    std::uint64_t newest() const;

    // Waits until there is a ticket above `after`, at most so long; true when there is. stop() ends
    // all waiting, for good.
    bool waitForMore(std::uint64_t after, std::chrono::milliseconds atMost) const;
    void stop();
    bool isStopped() const;

  private:
    std::string keep(const std::shared_ptr<StoredTicket>& ticket);
    void removeOldest();

    StoreLimits limits_;

    // One ticket is added at a time, so that files are written in the order of their numbers, but
    // the pages need not wait for the files.
    std::mutex adding_;
    std::unique_ptr<TicketFolder> folder_;

    mutable std::mutex mutex_;  // of all below
    mutable std::condition_variable changed_;
    std::deque<TicketPointer> tickets_;  // ids without gaps, the oldest first
    std::size_t bytes_ = 0;
    std::uint64_t lastId_ = 0;
    bool stopped_ = false;
};

}  // namespace tavio::virtual_printer
