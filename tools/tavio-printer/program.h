// The running program.
#pragma once

#include "tools/tavio-printer/device/device.h"
#include "tools/tavio-printer/options.h"

namespace tavio::virtual_printer {

// Blocks the signals that the program reads itself: SIGINT, SIGTERM and SIGUSR1. Call it while
// there is only one thread, so that all later threads block them too.
void takeSignals();

// Runs until a signal or the last of --tickets ends it. Throws std::runtime_error, with one
// sentence, if it cannot start. To be called after takeSignals().
void runProgram(const Options& options);

// The line about a ticket: "ticket 3: 1650 x 600 dots, 1234 black, 2 problems: graphics cut short:
// 5 of 9 bytes (at byte 210)".
std::string ticketLine(std::uint64_t id, const DeviceTicket& ticket);

// "concert, 5.5 x 2 in"
std::string stockText(std::int32_t stock);

}  // namespace tavio::virtual_printer
