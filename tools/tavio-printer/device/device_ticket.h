// The tickets that come out of the device.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tavio/virtual-printer/printer.h"
#include "tavio/virtual-printer/problems.h"

namespace tavio::virtual_printer {

// A finished ticket with all its data. Its paper begins to move when it is handed over.
//
// At the end of a stream the last ticket comes out if something was drawn on it, if the stream had
// bytes but no ticket, or if there are problems after the last ticket. A client that sent nothing
// gets none.
struct DeviceTicket {
    Ticket ticket;
    Orientation orientation;
    TicketEnd end;
    bool marked;
    std::uint64_t connection;   // from 1
    std::uint64_t number;       // of its stream, from 1
    std::uint64_t beginOffset;  // in the stream
    std::vector<Byte> bytes;    // at most kMaxTicketBytes are kept
    std::uint64_t byteCount;    // all of them
    ProblemList problems;       // of this ticket, offsets from the ticket's first byte
};

inline constexpr std::size_t kMaxTicketBytes = std::size_t{16} << 20U;

}  // namespace tavio::virtual_printer
