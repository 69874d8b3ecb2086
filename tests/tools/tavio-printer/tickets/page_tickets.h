// Tickets as they come out of the device.
#pragma once

#include <string>
#include <string_view>

#include "tools/tavio-printer/device/device.h"

namespace tavio::test {

// The ticket that the stream draws; it is the stream's first, or a blank one where it has none.
virtual_printer::DeviceTicket printed(std::string_view stream,
                                      virtual_printer::TicketSize size = {64, 200, 100});

// The dots of a picture, in the text form of Ticket::toText(); "" where it is no 1-bit grey PNG.
std::string dotsOf(const Bytes& png);

}  // namespace tavio::test
