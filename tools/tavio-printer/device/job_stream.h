// Interprets a connection's stream, ticket by ticket.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "tools/tavio-printer/device/device_ticket.h"

namespace tavio::virtual_printer {

// Splits the stream at the ends of tickets, and collects the bytes and problems of each ticket.
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

    // So many bytes were dropped at this place of the stream.
    void addLoss(std::uint64_t count);

    // The end of the stream. The last ticket comes out if something was drawn on it, if the stream
    // had bytes but no ticket, or if there are problems after the last ticket.
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
    std::uint64_t tickets_ = 0;             // of the stream so far
    std::optional<DeviceTicket> finished_;  // came out in the present feed() or finish()

    // The ticket in the printer.
    std::uint64_t begin_ = 0;
    std::uint64_t byteCount_ = 0;
    std::vector<Byte> bytes_;
    ProblemList problems_;
};

}  // namespace tavio::virtual_printer
