// The program between its start and its end.
#pragma once

#include "tools/tavio-printer/device/device.h"
#include "tools/tavio-printer/options.h"

namespace tavio::virtual_printer {

// Signals that the program takes itself: SIGINT, SIGTERM and SIGUSR1. To be called while there is
// only one thread, so that all that follow leave them alone.
void takeSignals();

// Runs until a signal ends it, or the tickets that were asked for are out. Throws
// std::runtime_error, with one sentence, when it cannot begin. After takeSignals().
void runProgram(const Options& options);

// What is said of a ticket: "ticket 3: 1650 x 600 dots, 1234 black, 2 problems: graphics cut short:
// 5 of 9 bytes (at byte 210)".
std::string ticketLine(std::uint64_t id, const DeviceTicket& ticket);

// "concert, 5.5 x 2 in"
std::string stockText(std::int32_t stock);

}  // namespace tavio::virtual_printer
