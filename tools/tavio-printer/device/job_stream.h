// A connection's stream through the interpreter, ticket by ticket.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "tools/tavio-printer/device/device_ticket.h"

namespace tavio::virtual_printer {

// Cuts the stream exactly where tickets end, and gathers for each its bytes and its problems.
class JobStream {
  public:
    using OnTicket = std::function<void(DeviceTicket)>;

    // Throws std::invalid_argument for a ticket size outside its ranges.
    JobStream(const PrinterSettings& settings, OnTicket onTicket);
    JobStream(const JobStream&) = delete;
    JobStream& operator=(const JobStream&) = delete;

    // A new stream; logos are kept.
    void begin(std::uint64_t connection);

    // Takes bytes up to and including the one that ends a ticket, or all. Returns how many.
    std::size_t feed(std::span<const Byte> bytes);

    // Bytes that should be here are not.
    void lost(std::uint64_t count);

    // The end of the stream. The last ticket comes out if something was printed on it, if bytes
    // came but no ticket, and, blank, if what came after the last ticket had problems.
    void finish();

    std::size_t logoBytes() const { return printer_.logoMemoryUsed(); }

  private:
    void keepTicket(const FinishedTicket& finished);
    void keepBytes(std::span<const Byte> bytes);
    void takeProblems();
    DeviceTicket blankTicket() const;
    void deliver(DeviceTicket ticket);

    PrinterSettings settings_;
    OnTicket onTicket_;
    Printer printer_;
    std::uint64_t connection_ = 0;
    std::uint64_t tickets_ = 0;             // of the stream that came out
    std::optional<DeviceTicket> finished_;  // came out in the feed() or finish() that is going on

    // The ticket in the printer.
    std::uint64_t begin_ = 0;
    std::uint64_t byteCount_ = 0;
    std::vector<Byte> bytes_;
    ProblemList problems_;
};

}  // namespace tavio::virtual_printer
