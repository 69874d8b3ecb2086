// Tickets as they come out of the device.
#pragma once

#include <string>
#include <string_view>

#include "tools/tavio-printer/device/device.h"

namespace tavio::test {

// The stream's first ticket, or a blank one if it has none.
virtual_printer::DeviceTicket printed(std::string_view stream,
                                      virtual_printer::TicketSize size = {64, 200, 100});

// The dots of a picture, in the text form of Ticket::toText(); "" if it is no 1-bit grey PNG.
std::string dotsOf(const Bytes& png);

}  // namespace tavio::test
