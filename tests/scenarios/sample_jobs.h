// Jobs for scenarios, and what a printer makes of a job when nothing goes wrong.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"
#include "tavio/virtual-printer/printer.h"

namespace tavio::scenarios {

// An inch long, so that paper at 25.4 mm/s takes a second to pass.
inline constexpr virtual_printer::TicketSize kTicketSize{100, 200, 100};

Bytes bytesOf(std::string_view text);
void append(Bytes& to, std::string_view text);
void append(Bytes& to, std::span<const Byte> bytes);

// A position and so many bytes of graphics, a pattern that depends on `which`.
Bytes graphics(int row, int column, std::size_t count, unsigned which);

// Cut tickets of exactly `bytesEach` bytes, 40 or more, each with dots of its own.
Bytes ticketJob(std::size_t tickets, std::size_t bytesEach);

// Stores logo `number` of `count` bytes.
Bytes logoJob(int number, std::size_t count);

// The tickets of a job, each as its dots in rows of bits.
using Dots = std::vector<Byte>;
Dots dotsOf(const virtual_printer::Ticket& ticket);
std::vector<Dots> printedAlone(std::span<const Byte> job,
                               const virtual_printer::PrinterSettings& settings);

}  // namespace tavio::scenarios
